#include "feedback/dialogs/IssueTypeChoice.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLocale>
#include <QPushButton>

#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

namespace {

constexpr int MaximumTypes = 40;
constexpr int MaximumText = 60;
constexpr int Columns = 2;
constexpr int ColumnWidth = 170;  ///< of a text, in pixels; wider ones have a row each
constexpr int RowWidth = 320;     ///< still wider ones are elided

QString nameOf(const IssueType& type) {
    const QString name = QLocale().name() == "zh_CN" ? type.name : type.enName;
    return name.simplified().left(MaximumText);
}

}  // namespace

IssueTypeChoice::IssueTypeChoice(QWidget* parent)
    : QWidget(parent),
      m_grid(new QGridLayout),
      m_spinner(new Spinner),
      m_failure(new QWidget),
      m_failureText(new Label(Label::Secondary)),
      m_retry(new QPushButton(tr("Retry"))) {
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setHorizontalSpacing(Tokens::Space16);
    m_grid->setVerticalSpacing(Tokens::Space8);
    m_failureText->setObjectName("feedback_types_failure");
    m_failureText->setWordWrap(true);
    m_failureText->setText(tr("Failed to get feedback type, please check your internet connection"));
    m_retry->setObjectName("feedback_types_retry");
    m_retry->setAccessibleName(m_retry->text());
    m_retry->setAutoDefault(false);
    auto* failure = new QHBoxLayout(m_failure);
    failure->setContentsMargins(0, 0, 0, 0);
    failure->setSpacing(Tokens::Space12);
    failure->addWidget(m_failureText, 1);
    failure->addWidget(m_retry);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, Tokens::Space4, 0, Tokens::Space4);
    layout->addLayout(m_grid);
    layout->addWidget(m_spinner, 0, Qt::AlignLeft);
    layout->addWidget(m_failure);
    m_spinner->hide();
    m_failure->hide();
    connect(m_retry, &QPushButton::clicked, this, &IssueTypeChoice::retryWanted);
}

void IssueTypeChoice::showLoading() {
    m_failure->hide();
    m_spinner->startDelayed();
}

void IssueTypeChoice::showFailed() {
    m_spinner->stop();
    m_failure->show();
}

void IssueTypeChoice::setTypes(const QVector<IssueType>& types) {
    m_spinner->stop();
    const QFontMetrics metrics(font());
    bool isNarrow = true;
    for (const IssueType& type : types) {
        const QString name = nameOf(type);
        if (type.id.isEmpty() || name.isEmpty() || m_ids.contains(type.id) || m_boxes.size() >= MaximumTypes)
            continue;
        auto* box = new QCheckBox;
        box->setObjectName(QString("feedback_type_%1").arg(m_boxes.size()));
        box->setAccessibleName(name);
        QString shown = metrics.elidedText(name, Qt::ElideRight, RowWidth);
        if (shown != name)
            box->setToolTip(plainToolTip(name));
        box->setText(shown.replace('&', "&&"));
        isNarrow = isNarrow && metrics.horizontalAdvance(name) <= ColumnWidth;
        connect(box, &QCheckBox::toggled, this, &IssueTypeChoice::changed);
        m_ids += type.id;
        m_boxes += box;
    }
    const int columns = isNarrow ? Columns : 1;
    for (int i = 0; i < m_boxes.size(); ++i)
        m_grid->addWidget(m_boxes[i], i / columns, i % columns);
    m_failure->setVisible(!hasTypes());
}

QStringList IssueTypeChoice::chosen() const {
    QStringList chosen;
    for (int i = 0; i < m_boxes.size(); ++i) {
        if (m_boxes[i]->isChecked())
            chosen += m_ids[i];
    }
    return chosen;
}
