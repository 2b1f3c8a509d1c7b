#pragma once

#include <QString>
#include <stdexcept>

namespace StoreServer {

/// Why there can be no reports. An English sentence.
class ReportError : public std::runtime_error {
public:
    explicit ReportError(const QString& text) : std::runtime_error(text.toStdString()) {}
};

}  // namespace StoreServer
