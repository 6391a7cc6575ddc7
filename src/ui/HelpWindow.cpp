#include "ui/HelpWindow.h"

#include "core/Platform.h"
#include "prefs/Manual.h"

#include <QAction>
#include <QFileInfo>
#include <QListWidget>
#include <QSplitter>
#include <QTextBrowser>
#include <QToolBar>

HelpWindow::HelpWindow(QWidget *parent) : QMainWindow(parent)
{
    setObjectName(QStringLiteral("helpWindow"));
    setWindowTitle(lwTr("Ledgerwick Help"));
    // A window of its own, not kept above the main window.
    setWindowFlag(Qt::Window);

    m_browser = new QTextBrowser;
    m_browser->setObjectName(QStringLiteral("helpBrowser"));
    // Links to the web go to the desktop; the manual's own pages stay here.
    m_browser->setOpenExternalLinks(true);

    m_contents = new QListWidget;
    m_contents->setObjectName(QStringLiteral("helpContents"));
    for (const Manual::Entry &entry : Manual::contents()) {
        auto *row = new QListWidgetItem(lwTr(entry.title), m_contents);
        row->setData(Qt::UserRole, QString::fromLatin1(entry.page));
    }
    connect(m_contents, &QListWidget::itemActivated, this, [this](QListWidgetItem *row) {
        m_browser->setSource(QUrl(Manual::baseAddress() + row->data(Qt::UserRole).toString()));
    });
    connect(m_contents, &QListWidget::itemClicked, m_contents, &QListWidget::itemActivated);

    auto *splitter = new QSplitter;
    splitter->addWidget(m_contents);
    splitter->addWidget(m_browser);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({200, 600});
    setCentralWidget(splitter);

    QToolBar *bar = addToolBar(lwTr("Navigation"));
    bar->setObjectName(QStringLiteral("helpToolBar"));
    bar->setMovable(false);
    m_back = bar->addAction(style()->standardIcon(QStyle::SP_ArrowBack), lwTr("Back"), m_browser,
                            &QTextBrowser::backward);
    m_back->setShortcut(QKeySequence::Back);
    m_forward = bar->addAction(style()->standardIcon(QStyle::SP_ArrowForward), lwTr("Forward"), m_browser,
                               &QTextBrowser::forward);
    m_forward->setShortcut(QKeySequence::Forward);
    QAction *home = bar->addAction(style()->standardIcon(QStyle::SP_DirHomeIcon), lwTr("Contents"), this,
                                   [this] { m_browser->setSource(QUrl(Manual::baseAddress() + QStringLiteral("menu.html"))); });
    home->setObjectName(QStringLiteral("contentsAction"));
    m_back->setEnabled(false);
    m_forward->setEnabled(false);
    connect(m_browser, &QTextBrowser::backwardAvailable, m_back, &QAction::setEnabled);
    connect(m_browser, &QTextBrowser::forwardAvailable, m_forward, &QAction::setEnabled);
    connect(m_browser, &QTextBrowser::sourceChanged, this, &HelpWindow::markCurrentPage);

    resize(860, 640);
}

void HelpWindow::showAddress(const QUrl &address)
{
    if (address.isLocalFile() && QFileInfo::exists(address.toLocalFile())) {
        m_browser->setSource(address);
    } else if (address.isLocalFile()) {
        m_browser->setHtml(lwTr("<h1>Page missing</h1><p>The manual page %1 could not be written to this "
                                "computer. Check that your home folder has room and can be written to.</p>")
                               .arg(address.fileName().toHtmlEscaped()));
    } else {
        const QString shown = address.toString().toHtmlEscaped();
        m_browser->setHtml(lwTr("<h1>Ledgerwick on the web</h1><p>No web browser was found on this computer. "
                                "News about Ledgerwick and new versions is at <a href=\"%1\">%1</a>.</p>")
                               .arg(shown));
    }
    show();
    raise();
    activateWindow();
}

void HelpWindow::markCurrentPage(const QUrl &address)
{
    const QString page = address.fileName();
    for (int i = 0; i < m_contents->count(); ++i)
        if (m_contents->item(i)->data(Qt::UserRole).toString() == page) {
            m_contents->setCurrentRow(i);
            return;
        }
    m_contents->clearSelection();
}
