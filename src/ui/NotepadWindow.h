#pragma once

#include <QMainWindow>

class PrefsController;
class QAction;
class QActionGroup;
class QComboBox;
class QFontComboBox;
class QMenu;
class QToolBar;
class QTextCharFormat;
class QTextDocument;
class QTextEdit;

// The notepad: a rich text page kept in "notepad.rtfd". The document belongs
// to the preferences controller, which loads it at start-up and saves it
// with the preferences; this window only edits it.
class NotepadWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit NotepadWindow(PrefsController *controller, QWidget *parent = nullptr);
    ~NotepadWindow() override;

    QTextEdit *editor() const { return m_editor; }
    QAction *boldAction() const { return m_bold; }
    QAction *italicAction() const { return m_italic; }
    QAction *underlineAction() const { return m_underline; }
    QFontComboBox *fontCombo() const { return m_font; }
    QComboBox *sizeCombo() const { return m_size; }
    QAction *colourAction() const { return m_colour; }
    QActionGroup *alignmentGroup() const { return m_alignment; }

private:
    void buildActions();
    void buildFontControls(QToolBar *toolBar, QMenu *menu);
    void showAlignment();
    void mergeFormat(const QTextCharFormat &format);
    void showFormat(const QTextCharFormat &format);
    void releaseDocument();

    QTextDocument *m_document; // the controller's; nullptr once let go
    QTextEdit *m_editor = nullptr;
    QAction *m_bold = nullptr;
    QAction *m_italic = nullptr;
    QAction *m_underline = nullptr;
    QFontComboBox *m_font = nullptr;
    QComboBox *m_size = nullptr;
    QAction *m_colour = nullptr;
    QActionGroup *m_alignment = nullptr;
};
