#pragma once

#include <QWidget>

class QAbstractItemView;
class QComboBox;
class QPushButton;
class ReportManager;

// Above the reports table: the pop-up of the reports in the reports folder,
// which runs the chosen one, and a button that runs it again over the
// current data.
class ReportsPanel : public QWidget
{
    Q_OBJECT
public:
    // The view shows the manager's table; it takes each report's column widths.
    ReportsPanel(ReportManager *reports, QAbstractItemView *view, QWidget *parent = nullptr);

    QComboBox *reportPopUp() const { return m_popUp; }
    QPushButton *runButton() const { return m_run; }

    // Shows the manager's list of reports and its selection.
    void refresh();

protected:
    // The first time the tab is shown, its first report runs.
    void showEvent(QShowEvent *event) override;

private:
    void runIfNone();
    void applyColumnWidths();

    ReportManager *m_reports; // not owned
    QAbstractItemView *m_view;
    QComboBox *m_popUp;
    QPushButton *m_run;
};
