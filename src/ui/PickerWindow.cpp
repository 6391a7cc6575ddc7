#include "ui/PickerWindow.h"

#include "core/Platform.h"
#include "products/Picker.h"
#include "ui/lwHeaderSort.h"
#include "ui/lwWindowPlacement.h"
#include "ui/integrityTableView.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>
#include <QWindow>

PickerWindow::PickerWindow(Picker *picker, QWidget *parent) : QDialog(parent), m_picker(picker)
{
    setObjectName(QStringLiteral("pickerWindow"));
    setWindowModality(Qt::WindowModal);

    m_searchBox = new QLineEdit(this);
    m_searchBox->setObjectName(QStringLiteral("searchBox"));
    m_searchBox->setClearButtonEnabled(true);
    m_searchBox->setPlaceholderText(lwTr("Search"));

    m_table = new integrityTableView(this);
    m_table->setObjectName(QStringLiteral("pickerTable"));
    m_table->setModel(picker);
    m_table->horizontalHeader()->setSortIndicatorShown(false);
    // The two columns share the width: no sideways scrolling when all fits.
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_searchBox->installEventFilter(this);
    picker->setTableSelection(m_table->selectionModel());

    m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_searchBox);
    layout->addWidget(m_table);
    layout->addWidget(m_buttons);
    resize(420, 360);

    // Programmatic changes of the field (clearing it on open) do not filter.
    connect(m_searchBox, &QLineEdit::textEdited, picker, [picker](const QString &text) { picker->filter(text); });
    lwSortOnHeaderClicks(m_table->horizontalHeader(), picker);
    connect(m_table, &QAbstractItemView::doubleClicked, picker, [picker] { picker->finish(nullptr); });
    connect(m_buttons, &QDialogButtonBox::accepted, picker, [picker] { picker->finish(nullptr); });
    // Cancel, Escape and the close button all end in reject().
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(this, &QDialog::rejected, picker, [picker] { picker->cancel(nullptr); });

    connect(picker, &Picker::pickerShown, this, &PickerWindow::showPicker);
    connect(picker, &Picker::pickerHidden, this, &QWidget::hide);
}

bool PickerWindow::eventFilter(QObject *watched, QEvent *event)
{
    // Typing a few letters and Enter picks the first match: at a counter the
    // hands stay on the keys. The key then goes on to the dialog's OK.
    if (watched == m_searchBox && event->type() == QEvent::KeyPress && m_picker->rowCount() > 0 &&
        m_picker->selectedRow() < 0) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter)
            m_table->selectRow(0);
    }
    if (watched == m_searchBox && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent *>(event)->key() == Qt::Key_Down && m_picker->rowCount() > 0) {
        if (m_picker->selectedRow() < 0)
            m_table->selectRow(0);
        m_table->setFocus(Qt::TabFocusReason);
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void PickerWindow::showPicker()
{
    // A sheet on the window that asked (the order editor, the checkout), not
    // on the main window behind it: the window manager then gives it the
    // keyboard, and gives the keyboard back to that window when it closes.
    QWidget *asking = QApplication::activeWindow();
    if (asking && asking != this) {
        winId(); // the native window, so that its parent can be named
        windowHandle()->setTransientParent(asking->windowHandle());
    }
    setWindowTitle(m_picker->windowTitle());
    m_searchBox->setText(m_picker->searchText());
    show();
    if (asking && asking != this) {
        // Over the window that asked, where the eyes already are; placed once
        // mapped, since some window managers place a new dialog themselves.
        lwWindowPlacement::centreOver(this, asking);
    }
    raise();
    activateWindow();
    m_searchBox->setFocus();
}
