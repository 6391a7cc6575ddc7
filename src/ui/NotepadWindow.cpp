#include "ui/NotepadWindow.h"

#include "core/Platform.h"
#include "prefs/PrefsController.h"

#include <QAbstractTextDocumentLayout>
#include <QAction>
#include <QMenuBar>
#include <QTextCharFormat>
#include <QTextDocument>
#include <QTextEdit>
#include <QToolBar>

#include <utility>

NotepadWindow::NotepadWindow(PrefsController *controller, QWidget *parent)
    : QMainWindow(parent), m_document(controller->notepad())
{
    setObjectName(QStringLiteral("notePad"));
    setWindowTitle(lwTr("Notepad"));

    m_editor = new QTextEdit(this);
    m_editor->setObjectName(QStringLiteral("notepadEdit"));
    m_editor->setAcceptRichText(true);
    m_editor->setDocument(m_document);
    setCentralWidget(m_editor);

    buildActions();
    connect(m_editor, &QTextEdit::currentCharFormatChanged, this, &NotepadWindow::showFormat);
    showFormat(m_editor->currentCharFormat());

    // The document goes with the controller: let go of it first. While the
    // controller's destroyed() runs, its child document is still whole.
    connect(controller, &QObject::destroyed, this, &NotepadWindow::releaseDocument);
    resize(500, 600);
}

NotepadWindow::~NotepadWindow()
{
    releaseDocument();
}

void NotepadWindow::releaseDocument()
{
    if (!m_document)
        return;
    QTextDocument *document = std::exchange(m_document, nullptr);
    // The editor lent its viewport to the document's layout; take it back
    // before the viewport goes, and give the editor a document of its own.
    if (QAbstractTextDocumentLayout *layout = document->documentLayout())
        layout->setPaintDevice(nullptr);
    m_editor->setDocument(nullptr);
}

void NotepadWindow::buildActions()
{
    QToolBar *toolBar = addToolBar(lwTr("Format"));
    toolBar->setObjectName(QStringLiteral("formatToolBar"));
    QMenu *menu = menuBar()->addMenu(lwTr("F&ormat"));

    const auto make = [&](const QString &text, QKeySequence::StandardKey key, const QString &name) {
        auto *action = new QAction(text, this);
        action->setObjectName(name);
        action->setShortcut(key);
        action->setCheckable(true);
        toolBar->addAction(action);
        menu->addAction(action);
        return action;
    };
    m_bold = make(lwTr("&Bold"), QKeySequence::Bold, QStringLiteral("boldAction"));
    m_italic = make(lwTr("&Italic"), QKeySequence::Italic, QStringLiteral("italicAction"));
    m_underline = make(lwTr("&Underline"), QKeySequence::Underline, QStringLiteral("underlineAction"));

    // Each action shows the style it applies.
    QFont font = m_bold->font();
    font.setBold(true);
    m_bold->setFont(font);
    font = m_italic->font();
    font.setItalic(true);
    m_italic->setFont(font);
    font = m_underline->font();
    font.setUnderline(true);
    m_underline->setFont(font);

    connect(m_bold, &QAction::triggered, this, [this](bool on) {
        QTextCharFormat format;
        format.setFontWeight(on ? QFont::Bold : QFont::Normal);
        mergeFormat(format);
    });
    connect(m_italic, &QAction::triggered, this, [this](bool on) {
        QTextCharFormat format;
        format.setFontItalic(on);
        mergeFormat(format);
    });
    connect(m_underline, &QAction::triggered, this, [this](bool on) {
        QTextCharFormat format;
        format.setFontUnderline(on);
        mergeFormat(format);
    });
}

void NotepadWindow::mergeFormat(const QTextCharFormat &format)
{
    // With no selection the format applies to what is typed next.
    m_editor->mergeCurrentCharFormat(format);
    m_editor->setFocus();
}

void NotepadWindow::showFormat(const QTextCharFormat &format)
{
    m_bold->setChecked(format.fontWeight() >= QFont::Bold);
    m_italic->setChecked(format.fontItalic());
    m_underline->setChecked(format.fontUnderline());
}
