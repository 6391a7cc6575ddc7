#include "ui/NotepadWindow.h"

#include "core/Platform.h"
#include "prefs/PrefsController.h"

#include <QAbstractTextDocumentLayout>
#include <QAction>
#include <QActionGroup>
#include <QColorDialog>
#include <QComboBox>
#include <QFontComboBox>
#include <QFontDatabase>
#include <QStyle>
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
    // Wide enough for the whole format bar.
    resize(760, 600);
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
    toolBar->addSeparator();
    buildFontControls(toolBar, menu);
}

void NotepadWindow::buildFontControls(QToolBar *toolBar, QMenu *menu)
{
    m_font = new QFontComboBox(toolBar);
    m_font->setObjectName(QStringLiteral("fontCombo"));
    toolBar->addWidget(m_font);
    connect(m_font, &QFontComboBox::textActivated, this, [this](const QString &family) {
        QTextCharFormat format;
        format.setFontFamilies({family});
        mergeFormat(format);
    });

    m_size = new QComboBox(toolBar);
    m_size->setObjectName(QStringLiteral("sizeCombo"));
    m_size->setEditable(true);
    for (int size : QFontDatabase::standardSizes())
        m_size->addItem(QString::number(size));
    toolBar->addWidget(m_size);
    connect(m_size, &QComboBox::textActivated, this, [this](const QString &text) {
        const qreal size = text.toDouble();
        if (size <= 0)
            return;
        QTextCharFormat format;
        format.setFontPointSize(size);
        mergeFormat(format);
    });

    m_colour = new QAction(lwTr("&Colour…"), this);
    m_colour->setObjectName(QStringLiteral("colourAction"));
    toolBar->addAction(m_colour);
    menu->addSeparator();
    menu->addAction(m_colour);
    connect(m_colour, &QAction::triggered, this, [this] {
        const QColor colour = QColorDialog::getColor(m_editor->textColor(), this, lwTr("Text Colour"));
        if (!colour.isValid())
            return;
        QTextCharFormat format;
        format.setForeground(colour);
        mergeFormat(format);
    });

    toolBar->addSeparator();
    menu->addSeparator();
    m_alignment = new QActionGroup(this);
    const struct
    {
        const char *title;
        const char *name;
        Qt::Alignment alignment;
        QStyle::StandardPixmap fallback;
        const char *icon;
    } alignments[] = {{"Align &Left", "alignLeftAction", Qt::AlignLeft | Qt::AlignAbsolute, QStyle::SP_ArrowLeft,
                       "format-justify-left"},
                      {"C&entre", "alignCentreAction", Qt::AlignHCenter, QStyle::SP_ArrowUp, "format-justify-center"},
                      {"Align &Right", "alignRightAction", Qt::AlignRight | Qt::AlignAbsolute, QStyle::SP_ArrowRight,
                       "format-justify-right"},
                      {"&Justify", "justifyAction", Qt::AlignJustify, QStyle::SP_ArrowDown, "format-justify-fill"}};
    for (const auto &entry : alignments) {
        auto *action = new QAction(QIcon::fromTheme(QLatin1String(entry.icon), style()->standardIcon(entry.fallback)),
                                   lwTr(entry.title), m_alignment);
        action->setObjectName(QLatin1String(entry.name));
        action->setCheckable(true);
        action->setData(int(entry.alignment));
        toolBar->addAction(action);
        menu->addAction(action);
    }
    connect(m_alignment, &QActionGroup::triggered, this, [this](QAction *action) {
        m_editor->setAlignment(Qt::Alignment(action->data().toInt()));
        m_editor->setFocus();
    });
    connect(m_editor, &QTextEdit::cursorPositionChanged, this, &NotepadWindow::showAlignment);
    showAlignment();
}

void NotepadWindow::showAlignment()
{
    const Qt::Alignment current = m_editor->alignment() & Qt::AlignHorizontal_Mask & ~Qt::AlignAbsolute;
    for (QAction *action : m_alignment->actions()) {
        const Qt::Alignment shown = Qt::Alignment(action->data().toInt()) & ~Qt::AlignAbsolute;
        // A paragraph with no alignment of its own reads left to right.
        action->setChecked(shown == current || (current == 0 && shown == Qt::AlignLeft));
    }
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
    if (m_font) {
        const QFont font = format.font();
        const QStringList families = format.fontFamilies().toStringList();
        m_font->setCurrentFont(QFont(families.isEmpty() ? font.family() : families.first()));
        const qreal size = format.fontPointSize() > 0 ? format.fontPointSize() : font.pointSizeF();
        m_size->setEditText(QString::number(size));
    }
}
