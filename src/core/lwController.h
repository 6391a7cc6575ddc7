#pragma once

#include <QObject>
#include <QString>

#include <memory>

class Contact;
class Platform;
class PrefsController;
class dataObject;
class lwDateFormatter;

// What every manager may ask of the application controller: the state of the
// database and the desktop, saving, and the lookups across record kinds. The
// controller itself lives above the subsystems and knows every manager; the
// managers know it only through this.
class lwController : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    virtual Platform *platform() const = 0;
    virtual PrefsController *getPrefsController() const = 0;
    // Created at start-up; none before.
    virtual lwDateFormatter *getDateFormatter() const = 0;

    // True while another copy of the program holds the database's lock.
    virtual bool isReadOnly() const = 0;
    // Saves the one file of the manager given, or all of them when which is
    // the controller; answers whether every file asked for was written.
    virtual bool writeDatabase(QObject *which) = 0;
    // Accepted after a deletion; saving is left to the editors.
    virtual void setChangeFlag() {}

    // The contact with the id given as text; none when there is no such contact.
    virtual Contact *getContactbyId(const QString &id) const = 0;
    // "" for the id "0" (without asking the contacts), else the contact's name.
    virtual QString getContactNameforId(const QString &id) const = 0;
    // The id ("%i") of the first contact with that name; "0" when there is none.
    virtual QString getContactIdForName(const QString &name) const = 0;
    // The contact of an order's customer, 0 when the order or contact is unknown.
    virtual int getContactIdForOrder(int orderId) const = 0;
    virtual dataObject *getProductbyId(int id) const = 0;
    // The id ("%i") of the contact selected in the contacts list, "-1" when none.
    virtual QString getCurrentContactIdAsString() const = 0;
    // Links the contact to the order with that id (link and id).
    virtual void connectContact(const std::shared_ptr<Contact> &contact, int orderId) = 0;
    // The order whose lines are shown (its id; 0 for none).
    virtual int getCurrentOrder() const = 0;
    virtual void setCurrentOrder(int orderId) = 0;
    // Opens the contact editor on the customer of the order whose lines are shown.
    virtual void editContactForCurrentOrder() {}
    // The order editor commits its unfinished edit (another editor of orders came to the front).
    virtual void requestOrderManagerResign() {}
    // Shows the orders list in front.
    virtual void bringOrdersToFront() {}
};
