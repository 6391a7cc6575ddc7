#include "products/Item.h"
#include "core/RecordFields.h"

#include "core/DatabasePaths.h"
#include "core/NumberText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageWriter>
#include <QSaveFile>

#include <algorithm>
#include <climits>

namespace {

using RecordFields::assign;

QString yesNo(bool on)
{
    return on ? QStringLiteral("YES") : QStringLiteral("NO");
}

// One name of the by-name access. A null getter means the name cannot be
// read, a null setter that it cannot be written (writing it is ignored).
// A setter answers false to refuse the write as an error.
struct FieldAccess
{
    QLatin1String name;
    QString (*get)(const Item &);
    bool (*set)(Item &, const QString &);
};

template<const QString &(Item::*Get)() const, void (Item::*Set)(const QString &)>
constexpr FieldAccess text(const char *name)
{
    return {QLatin1String(name), [](const Item &i) { return (i.*Get)(); },
            [](Item &i, const QString &v) {
                (i.*Set)(v);
                return true;
            }};
}

template<bool (Item::*Get)() const, void (Item::*Set)(bool)> constexpr FieldAccess flag(const char *name)
{
    return {QLatin1String(name), [](const Item &i) { return yesNo((i.*Get)()); },
            [](Item &i, const QString &v) {
                (i.*Set)(v == QLatin1String("YES"));
                return true;
            }};
}

template<QString (Item::*Get)() const> constexpr FieldAccess derived(const char *name)
{
    return {QLatin1String(name), [](const Item &i) { return (i.*Get)(); }, nullptr};
}

// In the order the names are tested; each name appears once.
const FieldAccess kFields[] = {
    text<&Item::getBought, &Item::setBought>("bought"),
    text<&Item::getCode, &Item::setCode>("code"),
    text<&Item::getButtonCode, &Item::setButtonCode>("buttoncode"),
    text<&Item::getCondition, &Item::setCondition>("condition"),
    flag<&Item::getDecreaseQty, &Item::setDecreaseQty>("decreaseqty"),
    text<&Item::getDescription, &Item::setDescription>("description"),
    text<&Item::getDescription, &Item::setDescription>("comments"),
    flag<&Item::getExportSitemoss, &Item::setExportSitemoss>("exportsitemoss"),
    flag<&Item::getHideButtonCode, &Item::setHideButtonCode>("hidebuttoncode"),
    text<&Item::getItem, &Item::setItem>("item"),
    {QLatin1String("id"), [](const Item &i) { return QString::number(i.getID()); },
     [](Item &i, const QString &v) {
         i.setID(NumberText::intValue(v));
         return true;
     }},
    text<&Item::getPrice, &Item::setPrice>("price"),
    text<&Item::getQty, &Item::setQty>("qty"),
    // Readable, but a by-name write is an error the import reports: the
    // method is set only by the item editor and the database reader.
    {QLatin1String("quantitymethod"), [](const Item &i) { return i.getQuantityMethod(); },
     [](Item &, const QString &) { return false; }},
    text<&Item::getOptimumQty, &Item::setOptimumQty>("optimumqty"),
    derived<&Item::getReOrderQty>("reorderqty"),
    text<&Item::getShipping, &Item::setShipping>("shipping"),
    text<&Item::getStatus, &Item::setStatus>("status"),
    text<&Item::getSupplier, &Item::setSupplier>("supplier"),
    text<&Item::getVariation, &Item::setVariation>("variation"),
    text<&Item::getWarnlevel, &Item::setWarnlevel>("warnlevel"),
    derived<&Item::getStockCost>("stockcost"),
    derived<&Item::getStockRetail>("stockretail"),
    text<&Item::getTaxCode, &Item::setTaxCode>("taxcode"),
    text<&Item::getWebsiteFolder, &Item::setWebsiteFolder>("websitefolder"),
};

const FieldAccess *findField(const QString &name)
{
    return RecordFields::find(kFields, name);
}

} // namespace

Item::Item() = default;

bool Item::contains(const QString &text) const
{
    return RecordFields::containsIgnoringCase(text, {&m_code, &m_condition, &m_description, &m_item, &m_status});
}

QString Item::getFieldByName(const QString &name) const
{
    const FieldAccess *field = findField(name);
    if (!field || !field->get)
        return lwEmpty();
    return field->get(*this);
}

bool Item::setFieldByName(const QString &name, const QString &value)
{
    const FieldAccess *field = findField(name);
    if (!field || !field->set)
        return true;
    return field->set(*this, value);
}

int Item::adjustQty(int delta)
{
    // Saturate rather than overflow on absurd stock texts.
    const long long sum = static_cast<long long>(NumberText::intValue(m_qty)) + delta;
    const int quantity = int(std::clamp<long long>(sum, INT_MIN, INT_MAX));
    m_qty = QString::number(quantity);
    return quantity;
}

QString Item::getStockCost() const
{
    const float cost = NumberText::floatValue(m_bought) * NumberText::floatValue(m_qty);
    return NumberText::format("%.2f", double(cost));
}

QString Item::getStockRetail() const
{
    const float retail = NumberText::floatValue(m_bought) * NumberText::floatValue(m_qty);
    return NumberText::format("%.2f", double(retail));
}

QString Item::getReOrderQty() const
{
    const float reorder = NumberText::floatValue(m_optimumQty) - NumberText::floatValue(m_qty);
    return NumberText::format("%.2f", double(reorder));
}

QImage Item::getImage() const
{
    if (!m_image.isNull())
        return m_image;
    if (!QFileInfo(DatabasePaths::itemImagesFolder()).isDir())
        return {};
    const QString file = DatabasePaths::itemImageFile(getID());
    if (!QFileInfo::exists(file))
        return {};
    m_image = QImage(file);
    return m_image;
}

void Item::setImage(const QImage &image)
{
    m_image = image; // the same picture again shares its data: nothing is copied

    const QString folder = DatabasePaths::itemImagesFolder();
    QDir().mkpath(folder);
    const QString file = DatabasePaths::itemImageFile(getID());
    if (image.isNull()) {
        QFile::remove(file);
        return;
    }
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly))
        return;
    QImageWriter writer(&out, QByteArrayLiteral("tiff"));
    if (writer.write(image))
        out.commit();
    else
        out.cancelWriting();
}

void Item::setBought(const QString &value)
{
    assign(m_bought, value);
}
void Item::setCode(const QString &value)
{
    assign(m_code, value);
}
void Item::setCondition(const QString &value)
{
    assign(m_condition, value);
}
void Item::setDescription(const QString &value)
{
    assign(m_description, value);
}
void Item::setItem(const QString &value)
{
    assign(m_item, value);
}
void Item::setPrice(const QString &value)
{
    assign(m_price, value);
}
void Item::setQty(const QString &value)
{
    assign(m_qty, value);
}
void Item::setOptimumQty(const QString &value)
{
    assign(m_optimumQty, value);
}
void Item::setShipping(const QString &value)
{
    assign(m_shipping, value);
}
void Item::setStatus(const QString &value)
{
    assign(m_status, value);
}
void Item::setSupplier(const QString &value)
{
    assign(m_supplier, value);
}
void Item::setTaxCode(const QString &value)
{
    assign(m_taxcode, value);
}
void Item::setWarnlevel(const QString &value)
{
    assign(m_warnlevel, value);
}
void Item::setWebsiteFolder(const QString &value)
{
    assign(m_websitefolder, value);
}
void Item::setQuantityMethod(const QString &value)
{
    assign(m_qtymethod, value);
}
void Item::setButtonCode(const QString &value)
{
    assign(m_buttoncode, value);
}
void Item::setVariation(const QString &value)
{
    assign(m_variation, value);
}
