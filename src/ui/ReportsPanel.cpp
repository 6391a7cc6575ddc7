#include "ui/ReportsPanel.h"

#include "core/Platform.h"
#include "reports/ReportManager.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTimer>

ReportsPanel::ReportsPanel(ReportManager *reports, QAbstractItemView *view, QWidget *parent)
    : QWidget(parent), m_reports(reports), m_view(view), m_popUp(new QComboBox(this)),
      m_run(new QPushButton(lwTr("Run"), this))
{
    setObjectName(QStringLiteral("reportsPanel"));
    m_popUp->setObjectName(QStringLiteral("reportPopUp"));
    m_popUp->setMinimumContentsLength(24);
    m_popUp->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_run->setObjectName(QStringLiteral("runButton"));
    m_run->setToolTip(lwTr("Run the report again over the current data"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 0, 8, 0);
    auto *label = new QLabel(lwTr("&Report:"), this);
    label->setBuddy(m_popUp);
    layout->addWidget(label);
    layout->addWidget(m_popUp);
    layout->addWidget(m_run);
    layout->addStretch(1);

    connect(m_popUp, &QComboBox::activated, this, [this](int index) {
        m_reports->filterPopUp().index = index;
        m_reports->runReport();
    });
    connect(m_run, &QPushButton::clicked, m_reports, &ReportManager::runReport);
    connect(m_reports, &ReportManager::reportRun, this, &ReportsPanel::applyColumnWidths);
    connect(m_reports, &ReportManager::filterPopulated, this, [this] {
        refresh();
        // The list is filled before the database is read: the first report
        // runs once start-up is over.
        if (isVisible())
            QTimer::singleShot(0, this, &ReportsPanel::runIfNone);
    });
    refresh();
}

void ReportsPanel::refresh()
{
    const PopUp &filter = m_reports->filterPopUp();
    m_popUp->clear();
    m_popUp->addItems(filter.entries);
    m_popUp->setCurrentIndex(filter.index);
    m_run->setEnabled(!filter.entries.isEmpty());
}

void ReportsPanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    runIfNone();
}

void ReportsPanel::runIfNone()
{
    if (m_reports->currentReport().isEmpty())
        m_reports->runReport();
}

void ReportsPanel::applyColumnWidths()
{
    auto *table = qobject_cast<QTableView *>(m_view);
    if (!table)
        return;
    const auto &columns = m_reports->columns();
    for (int i = 0; i < columns.size(); ++i)
        table->setColumnWidth(i, columns.at(i).width);
}
