#include "packaging/driver/CompressionChoice.h"

#include <QHBoxLayout>
#include <QRadioButton>

#include "fenk/style/Tokens.h"
#include "packaging/driver/PackageCompression.h"

CompressionChoice::CompressionChoice(QWidget* parent) : QWidget(parent) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Fenk::Tokens::Space24);
    const auto add = [layout](const QString& text, const char* name) {
        auto* button = new QRadioButton(text);
        button->setObjectName(name);
        button->setAccessibleName(name);
        layout->addWidget(button);
        return button;
    };
    auto* small = add(tr("Smaller file (xz)"), "package_compression_xz");
    auto* fast = add(tr("Much faster (zstd)"), "package_compression_zstd");
    layout->addStretch();
    (PackageCompression::current() == PackageCompression::Zstd ? fast : small)->setChecked(true);
    connect(fast, &QRadioButton::toggled, this, [](bool isFast) {
        PackageCompression::set(isFast ? PackageCompression::Zstd : PackageCompression::Xz);
    });
}
