#pragma once

#include <QMetaType>
#include <QVector>

#include "shell/requests/AddItem.h"

/// What is to be done with all that the user dropped or pasted at once.
struct AddRequest {
    enum class Kind {
        Nothing,
        Open,      ///< one program
        Several,   ///< programs, each to be opened
        Manifest,  ///< one
        Portable,  ///< one folder or zip archive
        Address,   ///< one
        Refused    ///< errorText says why; of a single item, which is there then, without its name
    };
    static constexpr int MostPrograms = 8;

    Kind kind = Kind::Nothing;
    QVector<AddItem> items{};
    QString errorText{};

    /// The rule. A program with plain files of its folder is that program, as they lie beside it anyway.
    static AddRequest of(const QVector<AddItem>& items);

    bool canBeAdded() const { return kind != Kind::Nothing && kind != Kind::Refused; }
    /// The names of the items, for the user.
    QString shown() const;
};

Q_DECLARE_METATYPE(AddRequest)
