#include "contacts/Contact.h"
#include "core/DatabaseStore.h"
#include "core/Ledgerwick.h"
#include "products/Item.h"
#include "products/ItemManager.h"
#include "support/ScriptedPlatform.h"
#include "ui/ItemEditor.h"
#include "ui/ItemImageWell.h"
#include "ui/ItemListControls.h"
#include "ui/MainWindow.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

#include <memory>

using namespace Qt::Literals::StringLiterals;

class tst_ItemEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void createFromTheToolbarAndCommit();
    void doubleClickEditsAndStatusIsNotStored();
    void cancelThenCommitAddsTheItemAgain();
    void createSimilarKeepsTheValues();
    void deleteKeyAsks_data();
    void deleteKeyAsks();
    void searchAndStockFilter();
    void headerClickSorts();
    void imageWellTakesDroppedAndChosenPictures();
    void popUpsAndSupplierPicker();

private:
    std::shared_ptr<Item> addItem(const QString &code, const QString &name, const QString &qty);
    template<typename T> T *control(const char *name) const
    {
        T *widget = m_editor->findChild<T *>(QLatin1String(name));
        if (!widget)
            qFatal("no control %s", name);
        return widget;
    }
    QAbstractItemView *itemsView() const { return m_window->viewFor(m_items); }
    void doubleClickRow(int row);
    QStringList namesShown() const;
    void press(const char *button) { QTest::mouseClick(control<QPushButton>(button), Qt::LeftButton); }

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<ScriptedPlatform> m_platform;
    std::unique_ptr<Ledgerwick> m_ledgerwick;
    ItemManager *m_items = nullptr; // owned by the controller
    std::unique_ptr<MainWindow> m_window;
    ItemEditor *m_editor = nullptr;         // a child of the window
    ItemListControls *m_controls = nullptr; // a child of the window
};

void tst_ItemEditor::initTestCase()
{
    Q_INIT_RESOURCE(icons);
}

void tst_ItemEditor::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    QVERIFY(m_home->isValid());
    qputenv("HOME", m_home->path().toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", m_home->filePath(u".config"_s).toLocal8Bit());
    m_platform = std::make_unique<ScriptedPlatform>();
    m_ledgerwick = std::make_unique<Ledgerwick>(m_platform.get());
    m_ledgerwick->setDatabaseLocation(m_home->filePath(u"db.lwkdb"_s));
    m_items = new ItemManager;
    m_ledgerwick->setManager(DatabaseStore::Kind::Items, m_items);
    m_window = std::make_unique<MainWindow>(m_ledgerwick.get());
    m_editor = new ItemEditor(m_items, m_window.get());
    m_controls = new ItemListControls(m_items, m_window.get());
    m_window->selectTab(u"3"_s);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));

    auto supplier = std::make_shared<Contact>();
    supplier->setName(u"Acme Supplies"_s);
    supplier->setID(5);
    m_ledgerwick->getContactManager()->add(supplier);
}

void tst_ItemEditor::cleanup()
{
    m_window.reset();
    m_ledgerwick.reset();
    m_platform.reset();
    m_home.reset();
}

std::shared_ptr<Item> tst_ItemEditor::addItem(const QString &code, const QString &name, const QString &qty)
{
    auto item = std::make_shared<Item>();
    item->setCode(code);
    item->setItem(name);
    item->setQty(qty);
    m_items->add(item);
    return item;
}

void tst_ItemEditor::doubleClickRow(int row)
{
    QAbstractItemView *view = itemsView();
    const QPoint centre = view->visualRect(view->model()->index(row, 0)).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, centre);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, centre);
}

QStringList tst_ItemEditor::namesShown() const
{
    QStringList names;
    const QAbstractItemModel *model = itemsView()->model();
    for (int row = 0; row < model->rowCount(); ++row)
        names << model->index(row, 1).data().toString();
    return names;
}

void tst_ItemEditor::createFromTheToolbarAndCommit()
{
    QAction *newItem = nullptr;
    for (QAction *action : m_window->mainToolbar()->actions())
        if (action->objectName() == u"itemItemIdentifier"_s)
            newItem = action;
    QVERIFY(newItem);
    newItem->trigger();
    QTRY_VERIFY(m_editor->isVisible());
    QCOMPARE(m_editor->windowTitle(), u"Item"_s);
    QCOMPARE(control<QLineEdit>("codeEdit")->text(), u"P1"_s);
    QCOMPARE(control<QLineEdit>("warnLevelEdit")->text(), u"2"_s);

    QTest::keyClicks(control<QLineEdit>("nameEdit"), u"Widget"_s);
    QTest::keyClicks(control<QLineEdit>("qtyEdit"), u"4"_s);
    QTest::keyClicks(control<QPlainTextEdit>("descriptionEdit"), u"Blue one"_s);
    control<QComboBox>("conditionCombo")->setCurrentIndex(1);
    control<QCheckBox>("decreaseQtyCheck")->setChecked(true);
    press("okButton");

    QVERIFY(!m_editor->isVisible());
    QCOMPARE(namesShown(), QStringList{u"Widget"_s});
    const auto *item = static_cast<Item *>(m_items->getnthItem(0));
    QCOMPARE(item->getCode(), u"P1"_s);
    QCOMPARE(item->getQty(), u"4"_s);
    QCOMPARE(item->getDescription(), u"Blue one"_s);
    QCOMPARE(item->getCondition(), ItemManager::conditionEntries().at(1));
    QVERIFY(item->getDecreaseQty());
    QVERIFY(QFile::exists(m_home->filePath(u"db.lwkdb/items.xml"_s)));
}

void tst_ItemEditor::doubleClickEditsAndStatusIsNotStored()
{
    addItem(u"P1"_s, u"Widget"_s, u"4"_s);
    auto gadget = addItem(u"P2"_s, u"Gadget"_s, u"1"_s);
    gadget->setStatus(u"Available"_s);
    gadget->setSupplier(u"5"_s);

    doubleClickRow(1);
    QTRY_VERIFY(m_editor->isVisible());
    QCOMPARE(control<QLineEdit>("nameEdit")->text(), u"Gadget"_s);
    QCOMPARE(control<QLineEdit>("supplierNameEdit")->text(), u"Acme Supplies"_s);
    QCOMPARE(control<QComboBox>("statusCombo")->currentText(), u"Available"_s);

    QLineEdit *price = control<QLineEdit>("priceEdit");
    price->selectAll();
    QTest::keyClicks(price, u"3.50"_s);
    control<QComboBox>("statusCombo")->setCurrentIndex(2);
    press("okButton");
    QCOMPARE(gadget->getPrice(), u"3.50"_s);
    QCOMPARE(gadget->getStatus(), u"Available"_s);
    QCOMPARE(m_items->getCount(), 2);
}

void tst_ItemEditor::cancelThenCommitAddsTheItemAgain()
{
    auto existing = addItem(u"P1"_s, u"Widget"_s, u"4"_s);
    m_items->create(nullptr);
    QTRY_VERIFY(m_editor->isVisible());
    QTest::keyClick(control<QLineEdit>("nameEdit"), Qt::Key_Escape);
    QVERIFY(!m_editor->isVisible());
    QCOMPARE(m_items->getCount(), 1);

    // The creation is still pending: committing the next edit, here by
    // closing the window, adds the edited item a second time.
    doubleClickRow(0);
    QTRY_VERIFY(m_editor->isVisible());
    QTest::keyClicks(control<QLineEdit>("nameEdit"), u" Mk2"_s);
    QVERIFY(m_editor->close());
    QVERIFY(!m_editor->isVisible());
    QVERIFY(!m_items->isEditorShown());
    QCOMPARE(namesShown(), (QStringList{u"Widget Mk2"_s, u"Widget Mk2"_s}));
    QCOMPARE(m_items->getnthItem(1), existing.get());

    // Cancel discards what was typed.
    doubleClickRow(0);
    QTRY_VERIFY(m_editor->isVisible());
    QTest::keyClicks(control<QLineEdit>("nameEdit"), u" lost"_s);
    press("cancelButton");
    QVERIFY(!m_editor->isVisible());
    QCOMPARE(existing->getItem(), u"Widget Mk2"_s);
}

void tst_ItemEditor::createSimilarKeepsTheValues()
{
    addItem(u"P1"_s, u"Widget"_s, u"4"_s)->setPrice(u"9.99"_s);
    doubleClickRow(0);
    QTRY_VERIFY(m_editor->isVisible());
    press("createSimilarButton");
    QVERIFY(m_editor->isVisible());
    QCOMPARE(control<QLineEdit>("codeEdit")->text(), u"P2"_s);
    QCOMPARE(control<QLineEdit>("nameEdit")->text(), u"Widget"_s);
    QCOMPARE(control<QLineEdit>("priceEdit")->text(), u"9.99"_s);
    press("okButton");
    QCOMPARE(namesShown(), (QStringList{u"Widget"_s, u"Widget"_s}));
    QCOMPARE(static_cast<Item *>(m_items->getnthItem(1))->getCode(), u"P2"_s);
    QCOMPARE(static_cast<Item *>(m_items->getnthItem(1))->getPrice(), u"9.99"_s);
}

void tst_ItemEditor::deleteKeyAsks_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<QStringList>("left");
    QTest::addRow("OK") << 0 << QStringList{u"Gadget"_s};
    QTest::addRow("Cancel") << 1 << QStringList{u"Widget"_s, u"Gadget"_s};
}

void tst_ItemEditor::deleteKeyAsks()
{
    QFETCH(int, answer);
    QFETCH(QStringList, left);
    addItem(u"P1"_s, u"Widget"_s, u"4"_s);
    addItem(u"P2"_s, u"Gadget"_s, u"1"_s);
    QAbstractItemView *view = itemsView();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(view->model()->index(0, 0)).center());
    m_platform->alertAnswers.enqueue(answer);
    QTest::keyClick(view, Qt::Key_Delete);
    QCOMPARE(m_platform->alerts.size(), 1);
    QCOMPARE(m_platform->alerts.first().title, u"Delete Item"_s);
    QCOMPARE(namesShown(), left);
}

void tst_ItemEditor::searchAndStockFilter()
{
    addItem(u"P1"_s, u"Widget"_s, u"4"_s);
    addItem(u"P2"_s, u"Gadget"_s, u"0"_s);
    addItem(u"P3"_s, u"Wide gadget"_s, u""_s);
    QTest::keyClicks(m_controls->searchBox(), u"GADGET"_s);
    QCOMPARE(namesShown(), (QStringList{u"Gadget"_s, u"Wide gadget"_s}));
    QCOMPARE(m_controls->stockFilter()->count(), 2);
    m_controls->stockFilter()->setCurrentIndex(1);
    QCOMPARE(namesShown(), QStringList{u"Wide gadget"_s});
    m_controls->searchBox()->clear();
    QCOMPARE(namesShown(), (QStringList{u"Widget"_s, u"Wide gadget"_s}));
    m_controls->stockFilter()->setCurrentIndex(0);
    QCOMPARE(namesShown().size(), 3);
}

void tst_ItemEditor::headerClickSorts()
{
    addItem(u"P1"_s, u"b"_s, u"4"_s);
    addItem(u"P2"_s, u"A"_s, u"0"_s);
    addItem(u"P3"_s, u"c"_s, u""_s);
    auto *table = qobject_cast<QTableView *>(itemsView());
    QVERIFY(table);
    QHeaderView *header = table->horizontalHeader();
    const QPoint itemColumn(header->sectionViewportPosition(1) + header->sectionSize(1) / 2, header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, itemColumn);
    QCOMPARE(namesShown(), (QStringList{u"c"_s, u"b"_s, u"A"_s}));
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, itemColumn);
    QCOMPARE(namesShown(), (QStringList{u"A"_s, u"b"_s, u"c"_s}));
}

void tst_ItemEditor::imageWellTakesDroppedAndChosenPictures()
{
    m_items->create(nullptr);
    QTRY_VERIFY(m_editor->isVisible());
    auto *well = m_editor->findChild<ItemImageWell *>(u"imageWell"_s);
    QVERIFY(well);
    QVERIFY(well->acceptDrops());
    QVERIFY(!control<QPushButton>("deleteImageButton")->isEnabled());

    QImage red(8, 8, QImage::Format_RGB32);
    red.fill(Qt::red);
    const QString png = m_home->filePath(u"red.png"_s);
    QVERIFY(red.save(png));
    const QString text = m_home->filePath(u"notes.txt"_s);
    QFile textFile(text);
    QVERIFY(textFile.open(QIODevice::WriteOnly));
    textFile.close();

    auto drag = [well](const QString &path) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(path)});
        QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(well, &enter);
        if (!enter.isAccepted())
            return false;
        QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(well, &drop);
        return drop.isAccepted();
    };
    QVERIFY(!drag(text));
    QVERIFY(m_items->editorState().image.isNull());
    QVERIFY(drag(png));
    QCOMPARE(m_items->editorState().image.pixelColor(0, 0), QColor(Qt::red));
    QVERIFY(!well->image().isNull());
    QVERIFY(control<QPushButton>("deleteImageButton")->isEnabled());

    press("deleteImageButton");
    QVERIFY(well->image().isNull());

    m_platform->panelAnswers.enqueue(png);
    press("chooseImageButton");
    QVERIFY(!well->image().isNull());
    press("okButton");
    QVERIFY(QFile::exists(m_home->filePath(u"Library/Application Support/Ledgerwick/ledgerwickdatabase.lwkdb/"
                                           "ItemImages/1.tiff"_s)));
}

void tst_ItemEditor::popUpsAndSupplierPicker()
{
    RecordTable suppliers;
    m_items->setSupplierSource(&suppliers);
    m_items->setPickerOpener(
        [this](lwDataSource *, const QString &, const QString &, const QString &,
               std::function<void(dataObject *)> done) { done(m_ledgerwick->getContactManager()->getItemById(5)); });
    m_items->create(nullptr);
    QTRY_VERIFY(m_editor->isVisible());

    const struct
    {
        const char *name;
        QStringList entries;
    } popUps[] = {{"conditionCombo", ItemManager::conditionEntries()},
                  {"statusCombo", ItemManager::statusEntries()},
                  {"taxCodeCombo", ItemManager::taxCodeEntries()},
                  {"quantityMethodCombo", ItemManager::quantityMethodEntries()}};
    for (const auto &popUp : popUps) {
        QComboBox *combo = control<QComboBox>(popUp.name);
        QStringList shown;
        for (int i = 0; i < combo->count(); ++i)
            shown << combo->itemText(i);
        QCOMPARE(shown, popUp.entries);
    }
    QCOMPARE(control<QComboBox>("taxCodeCombo")->itemData(0, Qt::ToolTipRole).toString(), u"Standard: VAT at 20.00%"_s);

    press("supplierButton");
    QCOMPARE(control<QLineEdit>("supplierNameEdit")->text(), u"Acme Supplies"_s);
    control<QComboBox>("quantityMethodCombo")->setCurrentIndex(2);
    control<QComboBox>("taxCodeCombo")->setCurrentIndex(1);
    press("okButton");
    const auto *item = static_cast<Item *>(m_items->getnthItem(0));
    QCOMPARE(item->getSupplier(), u"5"_s);
    QCOMPARE(item->getQuantityMethod(), u"Show quantity"_s);
    QCOMPARE(item->getTaxCode(), u"Z"_s);
}

QTEST_MAIN(tst_ItemEditor)
#include "tst_itemeditor.moc"
