#include "ui/lwEditorWindow.h"

#include "core/lwEditorManager.h"
#include "core/Platform.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

lwEditorWindow::lwEditorWindow(lwEditorManagerBase *manager, QWidget *parent) : QDialog(parent), m_manager(manager)
{
    // A window of its own beside the main window, not a modal sheet.
    setModal(false);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    connect(m_manager, &lwEditorManagerBase::editorStateChanged, this, &lwEditorWindow::refresh);
    connect(m_manager, &lwEditorManagerBase::editorShown, this, &lwEditorWindow::bringToFront);
    connect(m_manager, &lwEditorManagerBase::editorHidden, this, &QWidget::hide);
    auto *help = new QShortcut(QKeySequence::HelpContents, this);
    connect(help, &QShortcut::activated, this, &lwEditorWindow::helpRequested);
}

QPushButton *lwEditorWindow::makeHelpButton()
{
    auto *button = new QPushButton(QIcon(QStringLiteral(":/icons/help.svg")), lwTr("Help"), this);
    button->setObjectName(QStringLiteral("helpButton"));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, &lwEditorWindow::helpRequested);
    return button;
}

lwEditorWindow::~lwEditorWindow() = default;

void lwEditorWindow::bind(QLineEdit *edit, QString &field)
{
    m_bindings.push_back({[edit, &field] {
                              // Only a changed text is set, so the cursor stays where the user left it.
                              if (edit->text() != field)
                                  edit->setText(field);
                          },
                          [edit, &field] { field = edit->text(); }});
}

void lwEditorWindow::bind(QPlainTextEdit *edit, QString &field)
{
    m_bindings.push_back({[edit, &field] {
                              if (edit->toPlainText() != field)
                                  edit->setPlainText(field);
                          },
                          [edit, &field] { field = edit->toPlainText(); }});
}

void lwEditorWindow::bind(QCheckBox *box, bool &field)
{
    m_bindings.push_back({[box, &field] { box->setChecked(field); }, [box, &field] { field = box->isChecked(); }});
}

void lwEditorWindow::bind(QComboBox *combo, PopUp &field)
{
    m_bindings.push_back({[combo, &field] {
                              QStringList shown;
                              for (int i = 0; i < combo->count(); ++i)
                                  shown << combo->itemText(i);
                              if (shown != field.entries) {
                                  combo->clear();
                                  combo->addItems(field.entries);
                              }
                              combo->setCurrentIndex(field.index < combo->count() ? field.index : -1);
                          },
                          [combo, &field] { field.index = combo->currentIndex(); }});
}

void lwEditorWindow::refresh()
{
    for (const Binding &binding : m_bindings)
        binding.show();
    refreshExtras();
}

void lwEditorWindow::writeBack()
{
    for (const Binding &binding : m_bindings)
        binding.store();
}

void lwEditorWindow::run(const std::function<void()> &action)
{
    writeBack();
    action();
}

void lwEditorWindow::reject()
{
    run([this] { m_manager->cancel(this); });
}

void lwEditorWindow::closeEvent(QCloseEvent *event)
{
    // Not QDialog's closeEvent, which would reject (drop) the edit.
    if (m_manager->isEditorShown()) {
        writeBack();
        m_manager->windowWillClose(this);
        // Detached, or nothing to commit: the window closes all the same.
        if (m_manager->isEditorShown())
            m_manager->hide(this);
    }
    event->accept();
}

void lwEditorWindow::bringToFront()
{
    setWindowTitle(editorTitle());
    refresh();
    show();
    raise();
    activateWindow();
    // A button clicked in the last edit must not keep the focus: a typed
    // space would press it.
    if (m_firstField)
        m_firstField->setFocus(Qt::OtherFocusReason);
}

void lwEditorWindow::layOutLines(QWidget *box, QWidget *table, std::initializer_list<QPushButton *> buttons)
{
    auto *buttonRow = new QHBoxLayout;
    for (QPushButton *b : buttons)
        buttonRow->addWidget(b);
    buttonRow->addStretch();
    auto *layout = new QVBoxLayout(box);
    layout->addWidget(table);
    layout->addLayout(buttonRow);
}
