#pragma once

#include <QWidget>

/// The two ways of PackageCompression; a choice is kept at once.
class CompressionChoice : public QWidget {
    Q_OBJECT

public:
    explicit CompressionChoice(QWidget* parent = nullptr);
};
