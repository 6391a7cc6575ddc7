#include "orders/OrderManager.h"

#include "contacts/Contact.h"
#include "contacts/ContactManager.h"
#include "core/DatabasePaths.h"
#include "core/Log.h"
#include "core/NumberText.h"
#include "core/Platform.h"
#include "core/lwController.h"
#include "orders/BOMManager.h"
#include "orders/OrderMoney.h"
#include "prefs/PrefsController.h"
#include "products/Item.h"
#include "products/ItemManager.h"
#include "products/WebsiteExport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QUrl>

namespace {

const QString kRepeatDateFormat = QStringLiteral("%d/%m/%y");

PrefsControls defaultControls()
{
    return PrefsControls();
}

} // namespace

OrderManager::OrderManager(QObject *parent)
    : lwEditorManager({lwTr("Delete Order"), lwTr("Do you want to delete the selected item from the database?"),
                       QString(), CancelRule::RemoveNew},
                      &Order::isDate, parent),
      m_clearColour(QColor::fromRgbF(0, 0, 0, 0))
{
    setObjectName(QStringLiteral("orders"));
    m_state.type = PopUp::withEntries(typeEntries());
    m_state.paymentMethod = PopUp::withEntries(paymentMethodEntries());
    m_state.balancePaid = PopUp::withEntries(balancePaidEntries());
    m_state.frequency = PopUp::withEntries(frequencyEntries());
    m_state.status = PopUp::withEntries(statusEntries());
    m_state.statusFilter = PopUp::withEntries({QStringLiteral("All"), QStringLiteral("Incomplete")});
    m_state.statusFilter.selectTitle(QStringLiteral("Incomplete"));
    m_state.searchText = lwEmpty();
    m_repeatTimer.setSingleShot(true);
    connect(&m_repeatTimer, &QTimer::timeout, this, &OrderManager::repeatTimerFired);
}

OrderManager::~OrderManager() = default;

void OrderManager::setBOMManager(BOMManager *bom)
{
    m_bom = bom;
}

void OrderManager::setContactManager(ContactManager *contacts)
{
    m_contacts = contacts;
}

void OrderManager::setItemManager(ItemManager *items)
{
    m_items = items;
}

BOMManager *OrderManager::bomManager() const
{
    return m_bom;
}

ContactManager *OrderManager::contactManager() const
{
    return m_contacts;
}

ItemManager *OrderManager::itemManager() const
{
    return m_items;
}

CalendarDate OrderManager::now() const
{
    return m_clock ? m_clock() : CalendarDate::currentDate();
}

QStringList OrderManager::typeEntries()
{
    return {QStringLiteral("Order"), lwTr("Quote"), lwTr("Enquiry"), lwTr("Repair"), lwTr("Service")};
}

QStringList OrderManager::paymentMethodEntries()
{
    return {QStringLiteral("web"), lwTr("cash"), lwTr("cheque"), lwTr("card"), lwTr("bank transfer"), lwTr("account")};
}

QStringList OrderManager::balancePaidEntries()
{
    return {lwTr("Not paid"), lwTr("Part paid"), lwTr("Paid in full")};
}

QStringList OrderManager::frequencyEntries()
{
    return {QStringLiteral("month"), QStringLiteral("week"), QStringLiteral("fortnight"), QStringLiteral("year")};
}

QStringList OrderManager::statusEntries() const
{
    const PrefsController *prefs = ledgerwick() ? ledgerwick()->getPrefsController() : nullptr;
    QStringList entries = prefs ? prefs->getStatusList() : defaultControls().statuses.split(QLatin1Char('\n'));
    entries.removeAll(QString());
    if (!entries.contains(QStringLiteral("Complete")))
        entries << QStringLiteral("Complete");
    return entries;
}

std::shared_ptr<Order> OrderManager::sharedOrder(const Order *order) const
{
    return std::static_pointer_cast<Order>(sharedRecord(order));
}

// --- the editor cycle ----------------------------------------------------------------

std::shared_ptr<dataObject> OrderManager::makeNewRecord()
{
    const PrefsController *prefs = ledgerwick() ? ledgerwick()->getPrefsController() : nullptr;
    auto order = std::make_shared<Order>();
    // The id comes from the list the order will join (the checkout's sales join the orders).
    order->setID(recordList()->getNextId());
    order->setOrderNum((prefs ? prefs->getOrderPrefix() : defaultControls().orderPrefix) + QString::number(order->getID()));
    order->setDate(QStringLiteral("today"));
    order->setTaxRate(OrderMoney::taxRateText(prefs ? prefs->getGlobalTaxRate()
                                                    : NumberText::floatValue(defaultControls().taxRate)));
    return order;
}

void OrderManager::edit(QObject *sender)
{
    setCreating(false);
    lwEditorManager::edit(sender);
}

void OrderManager::editRecord(dataObject *record)
{
    setCreating(false);
    lwEditorManager::editRecord(record);
}

void OrderManager::fillState(const Order &record)
{
    // Filling the editor may change the order's rate: the order is one of ours.
    auto &order = const_cast<Order &>(record);
    OrderEditorState &s = m_state;
    const PrefsController *prefs = ledgerwick() ? ledgerwick()->getPrefsController() : nullptr;
    const float globalRate = prefs ? prefs->getGlobalTaxRate() : NumberText::floatValue(defaultControls().taxRate);
    if (!isCreating() && OrderMoney::taxRateDiffers(order.getTaxRate(), globalRate) && platform()) {
        const int answer = platform()->alert(
            {lwTr("Tax Rate Changed"),
             lwTr("The tax rate has changed since this item was last saved. Do you wish to change the tax rate for "
                  "this item?"),
             {lwTr("Change to %1%").arg(NumberText::twoDecimals(globalRate)),
              lwTr("Keep %1%").arg(order.getTaxRate())}});
        if (answer == 0)
            order.setTaxRate(OrderMoney::taxRateText(globalRate));
    }
    s.balance = order.getBalance();
    s.balancePaid.selectTitle(order.getBalancePaid());
    s.date = order.getDate();
    s.deposit = order.getDeposit();
    s.depositPaid = order.getDepositPaid();
    s.description = order.getDescription();
    s.orderNum = order.getOrderNum();
    s.shipping = order.getShipping();
    s.title = order.getTitle();
    s.value = order.getValue();
    s.valueWithTax = order.getValueWithTax();
    s.taxShown = OrderMoney::showsTax(order.getTaxRate());
    const QString statement = prefs ? prefs->getTaxStatement() : defaultControls().taxStatement;
    s.taxLabel = s.taxShown ? OrderMoney::taxLabel(statement, order.getTaxRate()) : lwEmpty();
    s.taxAmount = s.taxShown ? order.getTax() : lwEmpty();
    s.net = s.taxShown ? order.getNet() : lwEmpty();
    s.status.entries = statusEntries();
    if (!s.status.entries.contains(order.getStatus()))
        s.status.entries << order.getStatus();
    s.status.selectTitle(order.getStatus());
    s.type.selectTitle(order.getType());
    s.paymentMethod.selectTitle(order.getPaymentMethod());
    if (!order.getRepeatFrequency().isEmpty())
        s.frequency.selectTitle(order.getRepeatFrequency());
    s.includeBOM = order.getIncludeBOM();
    s.sent = order.getSent();
    s.repeats = order.getRepeats();

    if (ledgerwick())
        ledgerwick()->setCurrentOrder(order.getID());
    else if (m_bom)
        m_bom->setCurrentOrder(order.getID());
    updateContactFields();
    m_numberOfAttachments = countAttachments(order.getID());
    setAttachmentStatus();
    s.repeatNote = Order::repeatNote(order.getLastRepeatDate(), s.repeats, s.frequency.selectedTitle(),
                                     prefs ? prefs->isUKFormat() : true);
}

void OrderManager::copyState(Order &order)
{
    const OrderEditorState &s = m_state;
    order.setBalance(lwNonNull(s.balance));
    order.setBalancePaid(lwNonNull(s.balancePaid.selectedTitle()));
    order.setDate(lwNonNull(s.date));
    order.setDeposit(lwNonNull(s.deposit));
    order.setDepositPaid(lwNonNull(s.depositPaid));
    order.setDescription(lwNonNull(s.description));
    order.setOrderNum(lwNonNull(s.orderNum));
    order.setPaymentMethod(lwNonNull(s.paymentMethod.selectedTitle()));
    order.setShipping(lwNonNull(s.shipping));
    if (const QString status = s.status.selectedTitle(); !status.isEmpty())
        order.setStatus(status);
    if (const QString type = s.type.selectedTitle(); !type.isEmpty())
        order.setType(type);
    order.setTax(lwNonNull(s.taxAmount));
    order.setNet(lwNonNull(s.net));
    order.setTitle(lwNonNull(s.title));
    order.setValue(lwNonNull(s.value));
    order.setValueWithTax(OrderMoney::valueWithTax(order.getValue(), order.getTax(), order.getShipping()));
    if (const QString frequency = s.frequency.selectedTitle(); !frequency.isEmpty())
        order.setRepeatFrequency(frequency);
    order.setIncludeBOM(s.includeBOM);
    order.setSent(s.sent);
    order.applyRepeatBox(s.repeats, now());
}

void OrderManager::commitEditor()
{
    if (!readOnlyCheck()) {
        hideEditor();
        return;
    }
    if (Order *order = orderInEditor())
        copyState(*order);
}

void OrderManager::cancel(QObject *sender)
{
    lwLog(QStringLiteral("Ordermanager cancelling"));
    if (isCreating())
        lwLog(QStringLiteral("Ordermanager creating is yes"));
    lwEditorManager::cancel(sender);
}

void OrderManager::requestResign(QObject *sender)
{
    if (isEditorShown())
        finish(sender);
}

Order *OrderManager::createAndAddDataObject()
{
    auto order = std::make_shared<Order>();
    add(order);
    return order.get();
}

void OrderManager::remove(dataObject *record)
{
    auto *order = dynamic_cast<Order *>(record);
    if (!order || !readOnlyCheck())
        return;
    deleteAttachments(order->getID());
    if (ledgerwick())
        ledgerwick()->setCurrentOrder(order->getID());
    if (m_bom) {
        m_bom->setCurrentOrder(order->getID());
        m_bom->deleteAllForCurrentOrder(this);
    }
    deleteItem(order);
    reloadData();
}

// --- the customer --------------------------------------------------------------------------

void OrderManager::addNewOrderToList()
{
    if (!isCreating() || !orderInEditor())
        return;
    add(currentShared());
    setCreating(false);
}

void OrderManager::openPicker(lwDataSource *source, const QString &f1, const QString &f2, const QString &type,
                              void (OrderManager::*answer)(dataObject *))
{
    if (!m_pickerOpener || !source)
        return;
    QPointer<OrderManager> self(this);
    m_pickerOpener(source, f1, f2, type, [self, answer](dataObject *record) {
        if (self)
            (self.data()->*answer)(record);
    });
}

void OrderManager::pickContact(QObject *)
{
    openPicker(m_contacts, QStringLiteral("name"), QStringLiteral("address"), QStringLiteral("Contact"),
               &OrderManager::setContact);
}

void OrderManager::setContact(dataObject *record)
{
    auto *contact = dynamic_cast<Contact *>(record);
    if (!contact || !m_contacts || !ledgerwick())
        return;
    ledgerwick()->connectContact(std::static_pointer_cast<Contact>(m_contacts->sharedRecord(contact)),
                                 ledgerwick()->getCurrentOrder());
    lwLog(QStringLiteral("set contact for order to %1").arg(contact->getID()));
}

void OrderManager::connectContactToOrderId(const std::shared_ptr<Contact> &contact, int orderId)
{
    addNewOrderToList();
    auto *order = dynamic_cast<Order *>(getItemById(orderId));
    if (!order || !contact)
        return;
    order->setContact(contact);
    order->setContactId(contact->getID());
    recordChanged(order);
}

void OrderManager::connectContactById(int contactId, Order &order) const
{
    Contact *contact = m_contacts ? m_contacts->getContactbyId(QString::number(contactId)) : nullptr;
    if (contact)
        order.setContact(std::static_pointer_cast<Contact>(m_contacts->sharedRecord(contact)));
    order.setContactId(contactId);
}

void OrderManager::createContact(QObject *sender)
{
    addNewOrderToList();
    if (m_contacts)
        m_contacts->createForCurrentOrder(sender);
}

void OrderManager::editContact(QObject *)
{
    const Order *order = orderInEditor();
    const std::shared_ptr<Contact> contact = order ? order->getContact() : nullptr;
    if (contact && m_contacts)
        m_contacts->editThisContact(contact.get());
}

void OrderManager::updateContactFields()
{
    OrderEditorState &s = m_state;
    Order *order = orderInEditor();
    if (order && !order->getContact())
        connectContactById(order->getContactId(), *order);
    const std::shared_ptr<Contact> contact = order ? order->getContact() : nullptr;
    s.contactName = contact ? contact->getName() : lwEmpty();
    s.contactAdd1 = contact ? contact->getAdd1() : lwEmpty();
    s.contactAdd2 = contact ? contact->getAdd2() : lwEmpty();
    s.contactAdd3 = contact ? contact->getAdd3() : lwEmpty();
    // The short address: the first line and the town, as an envelope window shows them.
    s.contactShortAddress = contact ? QStringList({contact->getAdd1(), contact->getAdd3()}).join(QStringLiteral(", "))
                                    : lwEmpty();
    if (contact && (contact->getAdd1().isEmpty() || contact->getAdd3().isEmpty()))
        s.contactShortAddress = contact->getAdd1() + contact->getAdd3();
    s.contactPostcode = contact ? contact->getPostcode() : lwEmpty();
    s.contactPhone = contact ? contact->getPhone() : lwEmpty();
    s.contactMobile = contact ? contact->getMobile() : lwEmpty();
    s.contactFax = contact ? contact->getFax() : lwEmpty();
    s.contactEmail = contact ? contact->getEmail() : lwEmpty();
    s.editContactEnabled = bool(contact);
    Q_EMIT editorStateChanged();
}

QString OrderManager::grabContactFields() const
{
    const Order *order = orderInEditor();
    const std::shared_ptr<Contact> contact = order ? order->getContact() : nullptr;
    if (!contact)
        return lwEmpty();
    const QString cr = QStringLiteral("\r");
    QString text = contact->getTitle().isEmpty() ? QString() : contact->getTitle() + QStringLiteral(" ");
    return text + contact->getName() + cr + contact->getAdd1() + cr + contact->getAdd2() + cr + contact->getAdd3() +
           cr + contact->getPostcode() + cr;
}

void OrderManager::copyContact(QObject *)
{
    if (platform())
        platform()->setPasteboardText(grabContactFields());
}

void OrderManager::sendEmail(QObject *)
{
    const Order *order = orderInEditor();
    const std::shared_ptr<Contact> contact = order ? order->getContact() : nullptr;
    if (contact && platform())
        platform()->openUrl(QUrl(QStringLiteral("mailto:") + contact->getEmail()));
}

// --- lines ------------------------------------------------------------------------------------------

void OrderManager::pickMaterial(QObject *)
{
    const PrefsController *prefs = ledgerwick() ? ledgerwick()->getPrefsController() : nullptr;
    openPicker(m_items, QStringLiteral("code"), QStringLiteral("item"),
               prefs ? prefs->getTermItem() : defaultControls().terms.item, &OrderManager::setMaterial);
}

void OrderManager::pickTime(QObject *)
{
    openPicker(m_actions, QStringLiteral("totalTimeUnits"), QStringLiteral("title"), QStringLiteral("Task"),
               &OrderManager::setTime);
}

void OrderManager::setMaterial(dataObject *record)
{
    auto *item = dynamic_cast<Item *>(record);
    if (!item || !m_bom)
        return;
    if (item->getQty() == QLatin1String("0") && platform()) {
        const int answer = platform()->alert(
            {lwTr("Out of Stock"), lwTr("You have none of these items. Do you still wish to add one to this order?"),
             {lwTr("Add anyway"), lwTr("Cancel")}});
        if (answer != 0)
            return;
    }
    if (item->getDecreaseQty()) {
        const int left = item->decQty();
        if (left <= NumberText::intValue(item->getWarnlevel()) && platform())
            platform()->alert({lwTr("Low Stock"), lwTr("This leaves %1 of these items in stock.").arg(left),
                               {lwTr("OK")}});
    }
    m_bom->addProduct(*item);
    m_bom->reloadData(this);
    if (m_items) {
        m_items->filter(this);
        m_items->recordChanged(item);
    }
    WebsiteExport::exportItemAsSitemossObject(*item);
}

void OrderManager::setTime(dataObject *action)
{
    if (!action || !m_bom)
        return;
    m_bom->addTime(*action);
    m_bom->reloadData(this);
    if (m_items)
        m_items->filter(this);
}

void OrderManager::addAdHocLine(QObject *)
{
    if (m_bom)
        m_bom->create(this);
}

void OrderManager::deleteLine(QObject *)
{
    if (m_bom)
        m_bom->deleteKey(this);
}

// --- money -----------------------------------------------------------------------------------------------

void OrderManager::insertBOMTotal(QObject *sender)
{
    const float total = m_bom ? m_bom->getTotalforCurrentOrder() : 0;
    lwLog(QStringLiteral("inserting BOM Total - ") + NumberText::sixDecimals(total));
    m_state.value = NumberText::sixDecimals(total);
    lwLog(QStringLiteral("inserted BOM Total - ") + NumberText::sixDecimals(total));
    calculateBalance(sender);
}

void OrderManager::insertBOMShipping(QObject *sender)
{
    m_state.shipping = NumberText::sixDecimals(m_bom ? m_bom->getShippingforCurrentOrder() : 0);
    calculateBalance(sender);
}

void OrderManager::insertBOMTax(QObject *sender)
{
    const Order *order = orderInEditor();
    const float rate = order ? NumberText::floatValue(order->getTaxRate()) : 0;
    const float lineTax = m_bom ? m_bom->getTaxforCurrentOrderatRate(rate) : 0;
    const float shipping = m_bom ? m_bom->getShippingforCurrentOrder() : 0;
    m_state.taxAmount = NumberText::sixDecimals(lineTax + shipping / (rate + 100) * rate);
    calculateBalance(sender);
}

void OrderManager::calculateTax(QObject *sender)
{
    insertBOMTotal(sender);
    insertBOMTax(sender);
    const Order *order = orderInEditor();
    const float rate = order ? NumberText::floatValue(order->getTaxRate()) : 0;
    const float lineTax = m_bom ? m_bom->getTaxforCurrentOrderatRate(rate) : 0;
    m_state.net = NumberText::twoDecimals(NumberText::floatValue(m_state.value) - lineTax);
    calculateBalance(sender);
}

void OrderManager::calculateBalance(QObject *)
{
    const OrderEditorState &s = m_state;
    m_state.balance = OrderMoney::plainNumber(NumberText::floatValue(s.value) + NumberText::floatValue(s.shipping) -
                                              NumberText::floatValue(s.deposit));
    m_state.valueWithTax = OrderMoney::valueWithTax(s.value, s.taxAmount, s.shipping);
    Q_EMIT editorStateChanged();
    Q_EMIT balanceCalculated();
}

// --- copies ------------------------------------------------------------------------------------------------

void OrderManager::duplicate(QObject *sender)
{
    Order *order = orderInEditor();
    if (!order || !readOnlyCheck())
        return;
    finish(sender);
    duplicate(order);
}

Order *OrderManager::duplicate(Order *source)
{
    if (!source)
        source = orderInEditor();
    if (!source)
        return nullptr;
    const PrefsController *prefs = ledgerwick() ? ledgerwick()->getPrefsController() : nullptr;
    auto copy = std::make_shared<Order>();
    add(copy);
    copy->setOrderNum((prefs ? prefs->getOrderPrefix() : defaultControls().orderPrefix) + QString::number(copy->getID()));
    copy->setDate(QStringLiteral("today"));
    copy->setTaxRate(OrderMoney::taxRateText(prefs ? prefs->getGlobalTaxRate()
                                                   : NumberText::floatValue(defaultControls().taxRate)));
    copy->setTax(source->getTax());
    copy->setBalance(source->getBalance());
    // The link only: the stored contact id stays 0, so the copy loses its customer at the next start.
    if (const std::shared_ptr<Contact> contact = source->getContact())
        copy->setContact(contact);
    copy->setShipping(source->getShipping());
    copy->setStatus(source->getStatus());
    copy->setTitle(source->getTitle());
    copy->setValue(source->getValue());
    copy->setDescription(QStringLiteral("%1\r%2").arg(lwTr("Recurrence of Order %1").arg(source->getOrderNum()),
                                                       source->getDescription()));
    copy->setIncludeBOM(source->getIncludeBOM());
    copy->setSent(source->getSent());
    source->setLastRepeatDate(now().toString(kRepeatDateFormat));
    if (m_bom)
        m_bom->duplicateMaterialsFromOrder(source->getID(), copy->getID());
    filter(this);
    if (ledgerwick()) {
        ledgerwick()->writeDatabase(this);
        if (m_bom)
            ledgerwick()->writeDatabase(m_bom);
    }
    const QString term = prefs ? prefs->getTermOrder() : defaultControls().terms.order;
    if (platform())
        platform()->alert({lwTr("Repeat %1").arg(term),
                           lwTr("%1 '%2' has been duplicated. The number of the new %3 is %4")
                               .arg(term, source->getTitle(), term, copy->getOrderNum()),
                           {lwTr("OK")}, Platform::AlertStyle::Informational});
    return copy.get();
}

// --- the list ---------------------------------------------------------------------------------------------------

void OrderManager::filter(QObject *)
{
    const QString &search = m_state.searchText;
    const QString status = m_state.statusFilter.selectedTitle();
    for (const auto &record : records()) {
        auto *order = static_cast<Order *>(record.get());
        bool visible = false;
        if (search.isEmpty() || order->contains(search)) {
            if (status == QLatin1String("All"))
                visible = true;
            else if (status == QLatin1String("Incomplete"))
                visible = order->getStatus() != QLatin1String("Complete");
        }
        // A customer match shows the order whatever its status.
        if (const std::shared_ptr<Contact> contact = order->getContact(); contact && contact->contains(search))
            visible = true;
        order->setVisible(visible);
    }
    reloadData();
}

QColor OrderManager::labelColorForRow(int row) const
{
    return labelColorForOrder(static_cast<const Order *>(getnthVisibleItem(row)));
}

QColor OrderManager::labelColorForOrder(const Order *order) const
{
    if (!order)
        return m_clearColour;
    // The settings objects of one process share one cache of the file.
    const QVariantList colours = QSettings(QStringLiteral("Ledgerwick"), QStringLiteral("Ledgerwick"))
                                     .value(QStringLiteral("LedgerwickFlagColours"))
                                     .toList();
    for (const QVariant &value : colours) {
        const QVariantMap entry = value.toMap();
        if (entry.value(QStringLiteral("Status")).toString() == order->getStatus())
            return QColor::fromRgbF(NumberText::floatValue(entry.value(QStringLiteral("redComponent")).toString()),
                                    NumberText::floatValue(entry.value(QStringLiteral("greenComponent")).toString()),
                                    NumberText::floatValue(entry.value(QStringLiteral("blueComponent")).toString()),
                                    1.0f);
    }
    return m_clearColour;
}

// --- attachments --------------------------------------------------------------------------------------------------

QString OrderManager::attachmentsFolder(int orderId)
{
    return QDir(DatabasePaths::standardBundleFolder()).filePath(QStringLiteral("Attachments/Order") +
                                                                QString::number(orderId));
}

int OrderManager::countAttachments(int orderId)
{
    QStringList entries = QDir(attachmentsFolder(orderId)).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                                                      QDir::NoDotAndDotDot, QDir::Name);
    if (entries.isEmpty())
        return 0;
    return int(entries.size()) - (entries.first() == QLatin1String(".DS_Store") ? 1 : 0);
}

void OrderManager::deleteAttachments(int orderId)
{
    QDir(attachmentsFolder(orderId)).removeRecursively();
}

void OrderManager::attach(QObject *)
{
    if (!platform())
        return;
    const QString path = platform()->openPanel({lwTr("Attach a File"), {}, QDir::homePath()});
    if (!path.isEmpty())
        fileDropped(path);
}

void OrderManager::fileDropped(const QString &path)
{
    const Order *order = orderInEditor();
    if (!order || path.isEmpty())
        return;
    const QString folder = attachmentsFolder(order->getID());
    QDir().mkpath(folder);
    // A failed copy is not reported.
    QFile::copy(path, QDir(folder).filePath(QFileInfo(path).fileName()));
    ++m_numberOfAttachments;
    setAttachmentStatus();
}

void OrderManager::viewAttachments(QObject *)
{
    const Order *order = orderInEditor();
    if (order && platform())
        platform()->openPath(attachmentsFolder(order->getID()));
}

void OrderManager::setAttachmentStatus()
{
    OrderEditorState &s = m_state;
    if (m_numberOfAttachments <= 0)
        s.attachmentNote = lwTr("There are no attachments");
    else if (m_numberOfAttachments == 1)
        s.attachmentNote = lwTr("There is 1 attachment");
    else
        s.attachmentNote = QStringLiteral("%1 %2 %3").arg(lwTr("There are "), QString::number(m_numberOfAttachments),
                                                          lwTr(" attachments"));
    s.viewAttachmentsEnabled = m_numberOfAttachments > 0;
    Q_EMIT editorStateChanged();
    Q_EMIT attachmentsChanged(m_numberOfAttachments);
}

// --- repeats -------------------------------------------------------------------------------------------------------------

void OrderManager::kickOffCheckForOverdueRepeats()
{
    m_repeatCount = getCount();
    m_repeatWaitsForPass = true;
    m_repeatTimer.start(kFirstRepeatPassMs);
}

void OrderManager::repeatTimerFired()
{
    if (m_repeatWaitsForPass) {
        m_repeatWaitsForPass = false;
        repeatPass(m_repeatCount);
        m_repeatTimer.start(kRepeatPeriodMs);
    } else {
        m_repeatCount = getCount();
        m_repeatWaitsForPass = true;
        m_repeatTimer.start(kFirstRepeatPassMs);
    }
}

void OrderManager::relinkContacts()
{
    for (const auto &record : records())
        if (auto *order = static_cast<Order *>(record.get()); !order->getContact())
            connectContactById(order->getContactId(), *order);
}

QList<std::pair<QString, QString>> OrderManager::checkForOverdueRepeats()
{
    return repeatPass(getCount());
}

QList<std::pair<QString, QString>> OrderManager::repeatPass(int count)
{
    QList<std::pair<QString, QString>> copies;
    // A pass started from inside the alert of another would show a second alert.
    if (m_repeatPassRunning)
        return copies;
    m_repeatPassRunning = true;
    for (int i = 0; i < count && i < getCount(); ++i) {
        auto *order = static_cast<Order *>(getnthItem(i));
        if (!order->getContact())
            connectContactById(order->getContactId(), *order);
        if (!order->getRepeats())
            continue;
        lwLog(QStringLiteral("%1 is set to repeat. last repeat date is %2").arg(order->getTitle(),
                                                                               order->getLastRepeatDate()));
        const CalendarDate next = order->nextRepeatDate();
        if (!next.isValid() || !(now() > next))
            continue;
        const QString sourceNumber = order->getOrderNum();
        const std::shared_ptr<Order> keep = sharedOrder(order);
        const Order *copy = duplicate(order);
        keep->setLastRepeatDate(next.toString(kRepeatDateFormat));
        if (copy)
            copies.append({sourceNumber, copy->getOrderNum()});
    }
    m_repeatPassRunning = false;
    return copies;
}
