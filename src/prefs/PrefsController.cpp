#include "prefs/PrefsController.h"

#include "core/DatabasePaths.h"
#include "core/Log.h"
#include "core/NumberText.h"
#include "core/Platform.h"
#include "richtext/RtfReader.h"
#include "richtext/RtfWriter.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QTextDocument>
#include <QVariantList>
#include <QVariantMap>

#include <algorithm>

namespace {

const QString kTaxRate = QStringLiteral("LedgerwickTaxRate");
const QString kTaxStatement = QStringLiteral("LedgerwickTaxStatement");
const QString kDateFormat = QStringLiteral("LedgerwickDateFormat");
const QString kCurrency = QStringLiteral("LedgerwickCurrency");
const QString kOrderPrefix = QStringLiteral("LedgerwickOrderPrefix");
const QString kItemPrefix = QStringLiteral("LedgerwickItemPrefix");
const QString kStockWarn = QStringLiteral("LedgerwickStockWarn");
const QString kTermOrder = QStringLiteral("LedgerwickTermOrder");
const QString kTermOrders = QStringLiteral("LedgerwickTermOrders");
const QString kTermItem = QStringLiteral("LedgerwickTermItem");
const QString kTermItems = QStringLiteral("LedgerwickTermItems");
const QString kTermBOM = QStringLiteral("LedgerwickTermBOM");
const QString kInvoiceCategories = QStringLiteral("LedgerwickInvoiceCategories");
const QString kStatuses = QStringLiteral("LedgerwickStatuses");
const QString kContactTypes = QStringLiteral("LedgerwickContactTypes");
const QString kDbLocation = QStringLiteral("LedgerwickDbLocation");
const QString kFlagColours = QStringLiteral("LedgerwickFlagColours");

const QString kStatus = QStringLiteral("Status");
const QString kRed = QStringLiteral("redComponent");
const QString kGreen = QStringLiteral("greenComponent");
const QString kBlue = QStringLiteral("blueComponent");
const QString kAlpha = QStringLiteral("alphaComponent");

const QString kDatabaseType = QStringLiteral("lwkdb");

// The app and the command-line tool share this one store.
class Store : public QSettings
{
public:
    Store() : QSettings(QStringLiteral("Ledgerwick"), QStringLiteral("Ledgerwick")) {}
};

// A stored component reads like any number text; the colour is calibrated,
// so anything outside 0..1 is clamped rather than widening the gamut.
float component(const QVariantMap &entry, const QString &key)
{
    return std::clamp(NumberText::floatValue(entry.value(key).toString()), 0.0f, 1.0f);
}

QColor opaqueColour(const QVariantMap &entry)
{
    return QColor::fromRgbF(component(entry, kRed), component(entry, kGreen), component(entry, kBlue), 1.0f);
}

QVariantList storedFlagColours(const QSettings &store)
{
    return store.value(kFlagColours).toList();
}

QStringList splitLines(const QString &text)
{
    return text.split(QLatin1Char('\n'));
}

} // namespace

PrefsController::PrefsController(Platform *platform, QObject *parent)
    : QObject(parent), m_platform(platform), m_notepad(new QTextDocument(this))
{
    m_appliedTerms = m_controls.terms;
}

PrefsController::~PrefsController() = default;

// --- start-up and saving ---------------------------------------------------

void PrefsController::readDefaults(QObject *)
{
    {
        Store store;
        const auto load = [&store](const QString &key, QString &control) {
            if (store.contains(key))
                control = store.value(key).toString();
        };
        PrefsControls &c = m_controls;
        load(kTaxRate, c.taxRate);
        load(kTaxStatement, c.taxStatement);
        // Absent: the matrix keeps the column it already shows.
        if (store.contains(kDateFormat))
            c.dateFormatColumn = store.value(kDateFormat).toString() == QLatin1String("1") ? 1 : 0;
        load(kCurrency, c.currency);
        load(kOrderPrefix, c.orderPrefix);
        load(kItemPrefix, c.itemPrefix);
        load(kStockWarn, c.stockWarn);
        load(kTermOrder, c.terms.order);
        load(kTermOrders, c.terms.orders);
        load(kTermItem, c.terms.item);
        load(kTermItems, c.terms.items);
        load(kTermBOM, c.terms.bom);
        load(kInvoiceCategories, c.invoiceCategories);
        load(kStatuses, c.statuses);
        load(kContactTypes, c.contactTypes);
        load(kDbLocation, c.dbLocation);
    }
    Q_EMIT controlsChanged();

    m_ukFormat = m_controls.dateFormatColumn != 1;
    Q_EMIT dateFormatApplied();

    m_appliedTerms = m_controls.terms;
    Q_EMIT termsApplied();

    // Without a notepad the pop-ups stay empty until the first OK: the order
    // of these steps has always been so.
    const QString path = notepadPath();
    if (!QFileInfo::exists(path))
        return;
    RtfReader reader;
    m_notepad->setUndoRedoEnabled(false); // the load is not an edit to undo
    if (!reader.readFile(path, m_notepad))
        lwLog(QStringLiteral("notepad not read: ") + reader.errorString());
    m_notepad->setUndoRedoEnabled(true);
    m_notepad->setModified(false);

    populateLists();
}

void PrefsController::OKButton(QObject *)
{
    Q_EMIT closeWindowRequested();

    const PrefsControls &c = m_controls;
    Store store;
    store.setValue(kTaxRate, c.taxRate);
    store.setValue(kTaxStatement, c.taxStatement);
    store.setValue(kCurrency, c.currency);
    store.setValue(kOrderPrefix, c.orderPrefix);
    store.setValue(kItemPrefix, c.itemPrefix);
    store.setValue(kDateFormat, c.dateFormatColumn == 1 ? QStringLiteral("1") : QStringLiteral("0"));
    store.setValue(kStockWarn, c.stockWarn);

    lwLog(QStringLiteral("Saving terms"));
    store.setValue(kTermOrder, c.terms.order);
    store.setValue(kTermOrders, c.terms.orders);
    store.setValue(kTermItem, c.terms.item);
    store.setValue(kTermItems, c.terms.items);
    store.setValue(kTermBOM, c.terms.bom);

    lwLog(QStringLiteral("Saving lists"));
    store.setValue(kInvoiceCategories, c.invoiceCategories);
    store.setValue(kStatuses, c.statuses);
    store.setValue(kContactTypes, c.contactTypes);

    lwLog(QStringLiteral("Saving notepad"));
    QDir().mkpath(DatabasePaths::applicationSupportFolder());
    QDir().mkpath(DatabasePaths::standardBundleFolder());

    store.setValue(kDbLocation, c.dbLocation);
    store.sync();

    // Not reported to the user: the notepad is a convenience, and this runs at quit.
    RtfWriter writer;
    if (!writer.writeFile(m_notepad, notepadPath()))
        lwLog(QStringLiteral("notepad not written: ") + writer.errorString());

    populateLists();
}

void PrefsController::openWindow(QObject *)
{
    Q_EMIT openWindowRequested();
}

// --- getters ----------------------------------------------------------------

float PrefsController::getGlobalTaxRate() const
{
    return NumberText::floatValue(m_controls.taxRate);
}

QString PrefsController::getTaxStatement() const
{
    return m_controls.taxStatement.trimmed();
}

QStringList PrefsController::getInvoiceCategoryList() const
{
    return splitLines(m_controls.invoiceCategories);
}

QStringList PrefsController::getStatusList() const
{
    return splitLines(m_controls.statuses);
}

QStringList PrefsController::getContactTypeList() const
{
    if (m_controls.contactTypes.isEmpty())
        return {};
    return splitLines(m_controls.contactTypes);
}

QString PrefsController::dateFormat() const
{
    return m_ukFormat ? QStringLiteral("%d/%m/%y") : QStringLiteral("%m/%d/%y");
}

QString PrefsController::dateTimeFormat() const
{
    return dateFormat() + QStringLiteral(" %H:%M");
}

QString PrefsController::dateFormatLabel() const
{
    return m_ukFormat ? QStringLiteral("dd/mm/yy") : QStringLiteral("mm/dd/yy");
}

QString PrefsController::selectFromItemsTitle() const
{
    return QStringLiteral("Select From ") + m_appliedTerms.items;
}

// --- pop-ups ------------------------------------------------------------------

void PrefsController::populateLists()
{
    m_billCategoryItems = getInvoiceCategoryList();
    m_orderStatusItems = getStatusList();
    m_colourStatusItems = getStatusList();
    // A refilled pop-up selects its first entry; the well is left as it is.
    m_colourStatusIndex = m_colourStatusItems.isEmpty() ? -1 : 0;

    const QStringList types = getContactTypeList();
    if (!types.isEmpty()) {
        m_contactTypeItems += types;
        m_contactFilterItems += types;
        m_companyTypeItems += types;
    }
    Q_EMIT listsPopulated();
}

// --- status colours ------------------------------------------------------------

void PrefsController::setColourStatusIndex(int index)
{
    m_colourStatusIndex = index >= 0 && index < m_colourStatusItems.size() ? index : -1;
}

QString PrefsController::selectedColourStatus() const
{
    return m_colourStatusIndex < 0 ? QString() : m_colourStatusItems.at(m_colourStatusIndex);
}

void PrefsController::statusSelectorHasChanged(QObject *)
{
    m_wellColour = colourForStatus(selectedColourStatus());
    Q_EMIT wellColourChanged(m_wellColour);
}

void PrefsController::setColorForStatus(const QColor &colour)
{
    // With nothing selected there is no status to give the colour to.
    if (m_colourStatusIndex < 0 || !colour.isValid())
        return;
    m_wellColour = colour;
    const QString status = selectedColourStatus();
    const QVariantMap entry{
        {kStatus, status},
        {kRed, NumberText::format("%f", double(colour.redF()))},
        {kGreen, NumberText::format("%f", double(colour.greenF()))},
        {kBlue, NumberText::format("%f", double(colour.blueF()))},
        {kAlpha, NumberText::format("%f", double(colour.alphaF()))},
    };

    Store store;
    QVariantList colours = storedFlagColours(store);
    bool matched = false;
    for (QVariant &value : colours) {
        if (value.toMap().value(kStatus).toString() == status) {
            value = entry;
            matched = true;
        }
    }
    if (!matched)
        colours.append(entry);
    // Stored at once, without waiting for OK.
    store.setValue(kFlagColours, colours);
    store.sync();
    Q_EMIT wellColourChanged(m_wellColour);
}

QColor PrefsController::colourForStatus(const QString &status)
{
    Store store;
    // Every matching entry is applied in turn, so the last one shows.
    QColor colour = Qt::white;
    for (const QVariant &value : storedFlagColours(store)) {
        const QVariantMap entry = value.toMap();
        if (entry.value(kStatus).toString() == status)
            colour = opaqueColour(entry);
    }
    return colour;
}

// --- database location ------------------------------------------------------

QString PrefsController::panelDirectory() const
{
    if (m_controls.dbLocation.isEmpty())
        return {};
    return QFileInfo(DatabasePaths::expandTilde(m_controls.dbLocation)).absolutePath();
}

void PrefsController::selectDbLocation(QObject *)
{
    if (!m_platform)
        return;
    // The bundle is a folder on disk, so the panel chooses folders; only a
    // bundle of the database's type is taken.
    Platform::Panel panel(lwTr("Choose an existing database"), {kDatabaseType}, panelDirectory());
    panel.chooseDirectories = true;
    panel.prompt = lwTr("Choose");
    panel.nameLabel = lwTr("database name");
    const QString chosen = m_platform->openPanel(panel);
    if (!chosen.isEmpty() && QFileInfo(chosen).suffix().compare(kDatabaseType, Qt::CaseInsensitive) != 0)
        return;
    savePanelDidEnd(chosen);
}

void PrefsController::createDbLocation(QObject *)
{
    if (!m_platform)
        return;
    Platform::Panel panel(lwTr("Create new database"), {kDatabaseType}, panelDirectory());
    panel.prompt = lwTr("Create");
    panel.nameLabel = lwTr("database name");
    QString chosen = m_platform->savePanel(panel);
    if (!chosen.isEmpty() && QFileInfo(chosen).suffix().compare(kDatabaseType, Qt::CaseInsensitive) != 0)
        chosen += QLatin1Char('.') + kDatabaseType;
    savePanelDidEnd(chosen);
}

void PrefsController::savePanelDidEnd(const QString &chosenPath)
{
    if (chosenPath.isEmpty())
        return;
    m_controls.dbLocation = chosenPath;
    Q_EMIT controlsChanged();
    // The bundle is made or opened at the next start, from the stored location.
    if (m_platform)
        m_platform->inform(lwTr("Create / switch Ledgerwick database"),
                           lwTr("You will need to quit and re-start Ledgerwick to see your change."));
}

void PrefsController::setDbLocationToDefault(QObject *)
{
    m_controls.dbLocation = defaultDbLocation();
    Q_EMIT controlsChanged();
}

QString PrefsController::defaultDbLocation()
{
    return PrefsControls::defaultDbLocation();
}

QString PrefsController::notepadPath()
{
    return DatabasePaths::standardBundleFolder() + QStringLiteral("/notepad.rtfd");
}
