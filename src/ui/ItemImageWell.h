#pragma once

#include <QImage>
#include <QLabel>

class QMimeData;

// The item editor's image well: shows a picture scaled to fit and takes a
// picture file dropped on it from the desktop (only the first of several).
class ItemImageWell : public QLabel
{
    Q_OBJECT
public:
    explicit ItemImageWell(QWidget *parent = nullptr);

    void setImage(const QImage &image);
    const QImage &image() const { return m_image; }

    // A local file whose name says it is a picture this program can read.
    static bool isImageFile(const QString &path);

Q_SIGNALS:
    void fileDropped(const QString &path);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    // The first local file of a drag, "" when it brings none that is a picture.
    static QString droppedImageFile(const QMimeData *data);
    void showScaled();

    QImage m_image;
};
