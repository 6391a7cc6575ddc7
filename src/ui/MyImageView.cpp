#include "ui/MyImageView.h"

#include "core/Platform.h"
#include "orders/OrderManager.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QIcon>
#include <QMimeData>
#include <QUrl>

namespace {

// The first local file a drag brings, "" when it brings none.
QString firstLocalFile(const QMimeData *data)
{
    if (!data || !data->hasUrls())
        return {};
    for (const QUrl &url : data->urls())
        if (url.isLocalFile())
            return url.toLocalFile();
    return {};
}

} // namespace

MyImageView::MyImageView(QWidget *parent) : QLabel(parent)
{
    setObjectName(QStringLiteral("attachmentWell"));
    setAcceptDrops(true);
    setAlignment(Qt::AlignCenter);
    setFrameShape(QFrame::StyledPanel);
    setFrameShadow(QFrame::Sunken);
    setFixedSize(72, 72);
    setToolTip(lwTr("Drop a file here to attach it to this order"));
}

void MyImageView::setOrderManager(OrderManager *orderManager)
{
    m_orderManager = orderManager;
    connect(orderManager, &OrderManager::attachmentsChanged, this, &MyImageView::updateIcon);
    updateIcon();
}

void MyImageView::updateIcon()
{
    const int count = m_orderManager ? m_orderManager->getNumberOfAttachments() : 0;
    if (count <= 0) {
        setPixmap(QPixmap());
        setProperty("well", QString());
        return;
    }
    const QString name = count == 1 ? QStringLiteral("singlefilewell") : QStringLiteral("doublefilewell");
    setPixmap(QIcon(QStringLiteral(":/icons/") + name + QStringLiteral(".svg")).pixmap(56, 56));
    setProperty("well", name);
}

void MyImageView::dragEnterEvent(QDragEnterEvent *event)
{
    if (firstLocalFile(event->mimeData()).isEmpty())
        event->ignore();
    else
        event->acceptProposedAction();
}

void MyImageView::dragMoveEvent(QDragMoveEvent *event)
{
    if (firstLocalFile(event->mimeData()).isEmpty())
        event->ignore();
    else
        event->acceptProposedAction();
}

void MyImageView::dropEvent(QDropEvent *event)
{
    const QString path = firstLocalFile(event->mimeData());
    if (path.isEmpty() || !m_orderManager) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    m_orderManager->fileDropped(path);
    updateIcon();
}
