#pragma once

#include "core/lwDataSource.h"

#include <QPointer>
#include <QString>

#include <functional>

class Platform;
class ReportItem;

// The one window through which the user picks a record of some kind from a
// searchable two-column list. The caller names the source, the two fields to
// show and a type word for the title, and is called back with the record
// chosen. Each row is a ReportItem holding field1, field2 and the record's id.
class Picker : public lwDataSource
{
    Q_OBJECT
public:
    using Callback = std::function<void(dataObject *record)>;

    explicit Picker(QObject *parent = nullptr);

    // The platform alerts go to; when none is set, the controller's.
    void setPlatform(Platform *platform) { m_platform = platform; }
    Platform *platform() const;

    // Fills the list from the source and shows the window. An empty source
    // gives the "None in database" alert instead.
    void beginfor(Callback callback, lwDataSource *source, const QString &field1, const QString &field2,
                  const QString &type);

    // Keeps visible the rows that hold every blank-separated word of the
    // text, ignoring case, in any field (the id included).
    void filter(const QString &searchText);
    // Filters again with the current search text.
    void filter(QObject *sender) override;

    // OK or double-click: hides the window, then calls back with the record
    // of the selected row (none when its id is no longer known). Without a
    // selected row nothing is called.
    void finish(QObject *sender = nullptr);
    void cancel(QObject *sender = nullptr);
    void hide(QObject *sender = nullptr);
    void show(QObject *sender = nullptr);

    const QString &windowTitle() const { return m_windowTitle; }
    const QString &searchText() const { return m_searchText; }
    const QString &field1() const { return m_field1; }
    const QString &field2() const { return m_field2; }
    lwDataSource *currentDataSource() const { return m_currentDataSource; }

    // Column "1" is the first field, "2" the second, anything else "".
    QString objectValueForTableColumn(const QString &identifier, int row) const override;
    // Sorts by field number int(column), ignoring case, options 0 to 2 only.
    // As in every list, ascending true leaves the larger values first. Equal
    // rows keep their order.
    void sortByColumn(const QString &column, bool ascending, int options) override;
    using lwDataSource::sortByColumn;

Q_SIGNALS:
    void pickerShown();
    void pickerHidden();

private:
    ReportItem *rowAt(int row) const;

    Callback m_callback;
    QString m_field1;
    QString m_field2;
    QPointer<lwDataSource> m_currentDataSource;
    QString m_windowTitle;
    QString m_searchText;
    Platform *m_platform = nullptr;
};
