#pragma once

#include <QSet>

#include "manifest/YamlTree.h"
#include "storeserver/data/Fault.h"

namespace StoreServer {

/// Reads one map of a YAML file strictly. Each reading method returns the value, or an empty one after adding
/// a fault; finish() then adds a fault for every key that nobody has asked for.
class YamlMap {
public:
    enum class Need { Required, Optional };
    enum class Lines { One, Many };

    /// A node that is no map is a fault. Node and faults must outlive this object.
    YamlMap(const YamlTree& node, const QString& file, Faults& faults);

    /// Text of at most `maximum` characters, without control characters but line breaks where it may have
    /// many lines.
    QString text(const QString& key, int maximum, Need need = Need::Optional, Lines lines = Lines::One);
    /// A whole number in decimal digits.
    qint64 number(const QString& key, qint64 minimum, qint64 maximum, Need need = Need::Optional);
    /// A map below this one; empty where there is none.
    YamlMap map(const QString& key, Need need = Need::Optional);

    bool has(const QString& key) const { return child(key) != nullptr; }
    /// Adds a fault at the value of the key, or at the map where the key is missing.
    void refuse(const QString& key, const QString& sentence);
    void finish();

private:
    const YamlTree* child(const QString& key) const;
    /// The text at the key; null where there is none, after a fault if there should be one.
    const YamlTree* scalar(const QString& key, Need need);

    const YamlTree& m_node;
    QString m_file;
    Faults& m_faults;
    QSet<QString> m_asked;
};

}  // namespace StoreServer
