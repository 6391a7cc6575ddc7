#pragma once

#include "prefs/PrefsControls.h"
#include "prefs/PrefsTerms.h"

#include <QColor>
#include <QObject>
#include <QString>
#include <QStringList>

class Platform;
class QTextDocument;

// Owner of every "Ledgerwick..." key of the settings store, of the state of
// the preferences window's controls and of the notepad document.
//
// The store is read once at start-up (readDefaults) and written when the
// user confirms the window, and at quit (OKButton). In between the controls
// hold the live values, and the getters read them. The date format and the
// terms are applied to the other windows at start-up only: a change takes
// effect at the next start.
class PrefsController : public QObject
{
    Q_OBJECT
public:
    explicit PrefsController(Platform *platform, QObject *parent = nullptr);
    ~PrefsController() override;

    Platform *platform() const { return m_platform; }
    void setPlatform(Platform *platform) { m_platform = platform; }

    // --- the controls -------------------------------------------------------
    // The window shows these and writes the user's edits straight back.
    const PrefsControls &controls() const { return m_controls; }
    PrefsControls &controls() { return m_controls; }
    // The notepad window edits this document; it lives as long as the controller.
    QTextDocument *notepad() const { return m_notepad; }

    // --- start-up and saving ------------------------------------------------
    // Loads the store into the controls and applies the date format and the
    // terms; then, only when the notepad file exists, loads the notepad and
    // fills the pop-up lists. Run once, before the database is read.
    void readDefaults(QObject *sender = nullptr);
    // Closes the window and writes every control to the store, the notepad
    // to its file, then fills the pop-up lists again.
    void OKButton(QObject *sender = nullptr);
    // Asks the preferences window to come to the front.
    void openWindow(QObject *sender = nullptr);

    // --- the getters (read the controls) ------------------------------------
    float getGlobalTaxRate() const;
    QString getTaxStatement() const; // trimmed at both ends
    QString getCurrency() const { return m_controls.currency; }
    QString getOrderPrefix() const { return m_controls.orderPrefix; }
    QString getItemPrefix() const { return m_controls.itemPrefix; }
    QString getStockWarn() const { return m_controls.stockWarn; }
    QString getTermOrder() const { return m_controls.terms.order; }
    QString getTermOrders() const { return m_controls.terms.orders; }
    QString getTermItem() const { return m_controls.terms.item; }
    QString getTermItems() const { return m_controls.terms.items; }
    QString getTermBOM() const { return m_controls.terms.bom; }
    // Split at each "\n", blank lines kept. An empty text gives one empty
    // entry, except for the contact types, which then give none.
    QStringList getInvoiceCategoryList() const;
    QStringList getStatusList() const;
    QStringList getContactTypeList() const;
    // The bundle to open at the next start, as typed ("~" not expanded).
    QString getDbLocation() const { return m_controls.dbLocation; }

    // --- the date format in force since readDefaults ------------------------
    bool isUKFormat() const { return m_ukFormat; }
    // The pattern every date field parses and writes: "%d/%m/%y" or "%m/%d/%y".
    QString dateFormat() const;
    // The same with a time of day: "%d/%m/%y %H:%M" or "%m/%d/%y %H:%M".
    QString dateTimeFormat() const;
    // What the date-format labels beside the date fields read.
    QString dateFormatLabel() const;

    // --- the terms in force since readDefaults ------------------------------
    // Tab titles, window titles, menu entries and headings take these.
    const PrefsTerms &appliedTerms() const { return m_appliedTerms; }
    // The title of the button that adds lines from the items.
    QString selectFromItemsTitle() const;

    // --- the pop-ups offering the lists -------------------------------------
    // Refills the bill category, order status and colour assignment pop-ups;
    // adds the contact types below what the three contact pop-ups already
    // hold (never emptied, so every call adds them once more).
    void populateLists();
    const QStringList &billCategoryItems() const { return m_billCategoryItems; }
    const QStringList &orderStatusItems() const { return m_orderStatusItems; }
    const QStringList &contactTypeItems() const { return m_contactTypeItems; }
    const QStringList &contactFilterItems() const { return m_contactFilterItems; }
    const QStringList &companyTypeItems() const { return m_companyTypeItems; }

    // --- status colours -----------------------------------------------------
    // The colour assignment pop-up: its entries and the selected one (-1: none).
    const QStringList &colourStatusItems() const { return m_colourStatusItems; }
    int colourStatusIndex() const { return m_colourStatusIndex; }
    void setColourStatusIndex(int index);
    QString selectedColourStatus() const;
    // The colour well beside it.
    QColor wellColour() const { return m_wellColour; }
    // The pop-up's selection changed: the well shows the stored colour of
    // the selected status, opaque, or white when it has none.
    void statusSelectorHasChanged(QObject *sender = nullptr);
    // The well changed: the colour of the selected status is stored at once.
    void setColorForStatus(const QColor &colour);
    // The stored colour of a status, opaque; white when it has none.
    static QColor colourForStatus(const QString &status);

    // --- the database location ----------------------------------------------
    // Both ask for a bundle, put its path in the location field and tell the
    // user it takes effect at the next start. Nothing is created or opened.
    void selectDbLocation(QObject *sender = nullptr);
    void createDbLocation(QObject *sender = nullptr);
    // A panel answered: an empty path means it was cancelled.
    void savePanelDidEnd(const QString &chosenPath);
    void setDbLocationToDefault(QObject *sender = nullptr);
    // "~/Library/Application Support/Ledgerwick/ledgerwickdatabase.lwkdb".
    static QString defaultDbLocation();

    // "notepad.rtfd" in the standard bundle, whatever the location says.
    static QString notepadPath();

Q_SIGNALS:
    // The controller changed the controls itself (loaded, location chosen).
    void controlsChanged();
    void dateFormatApplied();
    void termsApplied();
    void listsPopulated();
    void wellColourChanged(const QColor &colour);
    void openWindowRequested();
    void closeWindowRequested();

private:
    QString panelDirectory() const;

    Platform *m_platform = nullptr; // not owned
    PrefsControls m_controls;
    QTextDocument *m_notepad = nullptr; // a child, so it outlives the destroyed() signal
    bool m_ukFormat = true;
    PrefsTerms m_appliedTerms;

    QStringList m_billCategoryItems;
    QStringList m_orderStatusItems;
    QStringList m_contactTypeItems;
    QStringList m_contactFilterItems;
    QStringList m_companyTypeItems;
    QStringList m_colourStatusItems;
    int m_colourStatusIndex = -1;
    QColor m_wellColour = Qt::white;
};
