#pragma once

#include <QLabel>
#include <QPointer>

class OrderManager;

// The order editor's attachment well: a file dropped on it from the desktop
// (only the first of several) becomes an attachment of the order, and it
// shows one or two file pictures as the order has one or more attachments.
class MyImageView : public QLabel
{
    Q_OBJECT
public:
    explicit MyImageView(QWidget *parent = nullptr);

    void setOrderManager(OrderManager *orderManager);
    // The picture for the order manager's count of attachments.
    void updateIcon();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    QPointer<OrderManager> m_orderManager;
};
