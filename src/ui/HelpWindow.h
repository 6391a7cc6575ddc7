#pragma once

#include <QMainWindow>
#include <QUrl>

class QAction;
class QListWidget;
class QTextBrowser;

// The program's own manual reader, for desktops without a web browser: the
// manual's contents beside the page, with back and forward.
class HelpWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit HelpWindow(QWidget *parent = nullptr);

    // Shows the page (a file of the manual) and brings the window to the front.
    // An address the window cannot show (the home page) is named on a page of its own.
    void showAddress(const QUrl &address);

    QTextBrowser *browser() const { return m_browser; }
    QListWidget *contentsList() const { return m_contents; }
    QAction *backAction() const { return m_back; }
    QAction *forwardAction() const { return m_forward; }

private:
    void markCurrentPage(const QUrl &address);

    QTextBrowser *m_browser = nullptr;
    QListWidget *m_contents = nullptr;
    QAction *m_back = nullptr;
    QAction *m_forward = nullptr;
};
