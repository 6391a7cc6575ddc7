#pragma once

#include <QDialog>

class Picker;
class QDialogButtonBox;
class QLineEdit;
class integrityTableView;

// The picker's sheet: a search field that filters as it is typed in, the
// two-column list, OK and Cancel. It shows the picker's state and hands every
// action to the picker, which opens and closes it.
class PickerWindow : public QDialog
{
    Q_OBJECT
public:
    explicit PickerWindow(Picker *picker, QWidget *parent = nullptr);

    QLineEdit *searchBox() const { return m_searchBox; }
    integrityTableView *table() const { return m_table; }
    QDialogButtonBox *buttons() const { return m_buttons; }

protected:
    // Down in the search field moves into the list.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showPicker();

    Picker *m_picker;
    QLineEdit *m_searchBox = nullptr;
    integrityTableView *m_table = nullptr;
    QDialogButtonBox *m_buttons = nullptr;
};
