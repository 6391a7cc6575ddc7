#include "ui/ItemImageWell.h"

#include "core/Platform.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QImageReader>
#include <QMimeData>
#include <QPixmap>
#include <QUrl>

ItemImageWell::ItemImageWell(QWidget *parent) : QLabel(parent)
{
    setAcceptDrops(true);
    setAlignment(Qt::AlignCenter);
    setFrameShape(QFrame::StyledPanel);
    setFrameShadow(QFrame::Sunken);
    setMinimumSize(120, 120);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setText(lwTr("Drop a picture here"));
    setWordWrap(true);
}

void ItemImageWell::setImage(const QImage &image)
{
    m_image = image;
    showScaled();
}

void ItemImageWell::showScaled()
{
    if (m_image.isNull()) {
        setPixmap(QPixmap());
        setText(lwTr("Drop a picture here"));
        return;
    }
    const QSize room = contentsRect().size() - QSize(8, 8);
    QImage shown = m_image;
    // Never enlarged: a small picture stays sharp.
    if (shown.width() > room.width() || shown.height() > room.height())
        shown = shown.scaled(room.expandedTo(QSize(1, 1)), Qt::KeepAspectRatio, Qt::SmoothTransformation);
    setPixmap(QPixmap::fromImage(shown));
}

void ItemImageWell::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    if (!m_image.isNull())
        showScaled();
}

bool ItemImageWell::isImageFile(const QString &path)
{
    const QByteArray suffix = QFileInfo(path).suffix().toLower().toLatin1();
    return !suffix.isEmpty() && QImageReader::supportedImageFormats().contains(suffix);
}

QString ItemImageWell::droppedImageFile(const QMimeData *data)
{
    if (!data || !data->hasUrls())
        return {};
    const QList<QUrl> urls = data->urls();
    if (urls.isEmpty() || !urls.first().isLocalFile())
        return {};
    const QString path = urls.first().toLocalFile();
    return isImageFile(path) ? path : QString();
}

void ItemImageWell::dragEnterEvent(QDragEnterEvent *event)
{
    if (!droppedImageFile(event->mimeData()).isEmpty())
        event->acceptProposedAction();
    else
        event->ignore();
}

void ItemImageWell::dragMoveEvent(QDragMoveEvent *event)
{
    if (!droppedImageFile(event->mimeData()).isEmpty())
        event->acceptProposedAction();
    else
        event->ignore();
}

void ItemImageWell::dropEvent(QDropEvent *event)
{
    const QString path = droppedImageFile(event->mimeData());
    if (path.isEmpty()) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    Q_EMIT fileDropped(path);
}
