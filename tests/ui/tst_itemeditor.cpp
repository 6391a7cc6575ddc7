// The item editor's wiring: each control reaches its state field, each
// button its action. The rules behind the actions are tested on the manager.
#include "products/Item.h"
#include "products/ItemManager.h"
#include "support/AppFixture.h"
#include "support/Widgets.h"
#include "ui/ItemEditor.h"
#include "ui/ItemImageWell.h"
#include "ui/ItemListControls.h"
#include "ui/MainWindow.h"

#include <QAbstractItemView>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QToolBar>

#include <memory>

using namespace Qt::Literals::StringLiterals;

class tst_ItemEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Q_INIT_RESOURCE(icons); }
    void init();
    void cleanup();

    void textControlsReachTheirFields_data();
    void textControlsReachTheirFields();
    void boxesAndPopUpsReachTheirFields();
    void buttonsRunTheirActions();
    void escapeCancelsAndTheCloseBoxCommits();
    void imageWellTakesDroppedPictures();
    void theListOpensTheEditorAndFilters();

private:
    template<typename T> T *control(const QString &name) const { return ::control<T>(m_editor, name); }
    void press(const char *button) { clickButton(m_editor, QLatin1String(button)); }
    void open();

    std::unique_ptr<AppFixture> m_app;
    ItemManager *m_items = nullptr;
    std::unique_ptr<MainWindow> m_window;
    ItemEditor *m_editor = nullptr; // a child of the window
};

void tst_ItemEditor::init()
{
    m_app = std::make_unique<AppFixture>();
    m_items = m_app->ledgerwick->getItemManager();
    m_window = std::make_unique<MainWindow>(m_app->ledgerwick.get());
    m_editor = new ItemEditor(m_items, m_window.get());
    m_app->addContact(u"Acme Supplies"_s, 5);
}

void tst_ItemEditor::cleanup()
{
    m_window.reset();
    m_app.reset();
}

void tst_ItemEditor::open()
{
    m_items->create(nullptr);
    QTRY_VERIFY(m_editor->isVisible());
}

void tst_ItemEditor::textControlsReachTheirFields_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("field"); // the item's field the commit stores it in
    const char *const pairs[][2] = {{"codeEdit", "code"},
                                    {"nameEdit", "item"},
                                    {"descriptionEdit", "description"},
                                    {"priceEdit", "price"},
                                    {"boughtEdit", "bought"},
                                    {"shippingEdit", "shipping"},
                                    {"qtyEdit", "qty"},
                                    {"optimumQtyEdit", "optimumqty"},
                                    {"warnLevelEdit", "warnlevel"},
                                    {"websiteFolderEdit", "websitefolder"},
                                    {"variationEdit", "variation"},
                                    {"buttonCodeEdit", "buttoncode"}};
    for (const auto &pair : pairs)
        QTest::newRow(pair[0]) << QString::fromLatin1(pair[0]) << QString::fromLatin1(pair[1]);
}

void tst_ItemEditor::textControlsReachTheirFields()
{
    QFETCH(QString, control);
    QFETCH(QString, field);
    auto item = m_app->addItem(u"P1"_s, u"Widget"_s);
    item->setFieldByName(field, u"from the item"_s);
    m_app->select(m_items, 0);
    m_items->edit(nullptr);
    QTRY_VERIFY(m_editor->isVisible());

    QWidget *widget = m_editor->findChild<QWidget *>(control);
    QVERIFY(widget);
    auto *line = qobject_cast<QLineEdit *>(widget);
    auto *text = qobject_cast<QPlainTextEdit *>(widget);
    QVERIFY(line || text);
    QCOMPARE(line ? line->text() : text->toPlainText(), u"from the item"_s);
    if (line)
        line->setText(u"typed"_s);
    else
        text->setPlainText(u"typed"_s);
    press("okButton");
    QCOMPARE(item->getFieldByName(field), u"typed"_s);
}

void tst_ItemEditor::boxesAndPopUpsReachTheirFields()
{
    open();
    ItemEditorState &s = m_items->editorState();
    const std::pair<const char *, bool *> boxes[] = {{"decreaseQtyCheck", &s.decreaseQty},
                                                     {"exportSitemossCheck", &s.exportSitemoss},
                                                     {"hideButtonCodeCheck", &s.hideButtonCode}};
    for (const auto &[name, field] : boxes) {
        QCheckBox *check = control<QCheckBox>(QLatin1String(name));
        *field = !*field;
        m_editor->refresh();
        QCOMPARE(check->isChecked(), *field);
        check->toggle();
        m_editor->writeBack();
        QCOMPARE(*field, check->isChecked());
    }
    const std::pair<const char *, PopUp *> popUps[] = {{"conditionCombo", &s.condition},
                                                       {"statusCombo", &s.status},
                                                       {"taxCodeCombo", &s.taxCode},
                                                       {"quantityMethodCombo", &s.quantityMethod}};
    for (const auto &[name, field] : popUps) {
        QComboBox *combo = control<QComboBox>(QLatin1String(name));
        QCOMPARE(combo->count(), field->entries.size());
        field->index = 2;
        m_editor->refresh();
        QCOMPARE(combo->currentText(), field->entries.at(2));
        combo->setCurrentIndex(1);
        m_editor->writeBack();
        QCOMPARE(field->index, 1);
    }
    // Each tax code explains itself with the preferences' rate.
    QCOMPARE(control<QComboBox>(u"taxCodeCombo"_s)->itemData(0, Qt::ToolTipRole).toString(),
             u"Standard: VAT at 20.00%"_s);
}

void tst_ItemEditor::buttonsRunTheirActions()
{
    m_items->setPickerOpener([this](lwDataSource *, const QString &, const QString &, const QString &,
                                    std::function<void(dataObject *)> done) {
        done(m_app->ledgerwick->getContactManager()->getItemById(5));
    });
    open();
    QCOMPARE(m_editor->windowTitle(), u"Item"_s);
    // Each opening puts the focus in the first field, so a typed space never
    // presses the button clicked last time.
    QCOMPARE(m_editor->focusWidget(), control<QLineEdit>(u"codeEdit"_s));

    press("supplierButton");
    QCOMPARE(control<QLineEdit>(u"supplierNameEdit"_s)->text(), u"Acme Supplies"_s);
    control<QLineEdit>(u"nameEdit"_s)->setText(u"Widget"_s);
    press("okButton");
    QVERIFY(!m_editor->isVisible());
    QCOMPARE(m_items->getCount(), 1);
    QCOMPARE(m_items->currentItem()->getSupplier(), u"5"_s);

    m_app->select(m_items, 0);
    m_items->edit(nullptr);
    QCOMPARE(m_editor->focusWidget(), control<QLineEdit>(u"codeEdit"_s));
    press("createSimilarButton");
    QVERIFY(m_editor->isVisible());
    QCOMPARE(control<QLineEdit>(u"codeEdit"_s)->text(), u"P2"_s);
    QCOMPARE(control<QLineEdit>(u"nameEdit"_s)->text(), u"Widget"_s);
    press("cancelButton");
    QVERIFY(!m_editor->isVisible());
    QCOMPARE(m_items->getCount(), 1);

    m_app->platform.panelAnswers.enqueue(m_app->home(u"site"_s));
    press("websiteFolderButton");
    QCOMPARE(control<QLineEdit>(u"websiteFolderEdit"_s)->text(), m_app->home(u"site"_s));
}

void tst_ItemEditor::escapeCancelsAndTheCloseBoxCommits()
{
    m_app->addItem(u"P1"_s, u"Widget"_s);
    m_app->select(m_items, 0);
    m_items->edit(nullptr);
    QTRY_VERIFY(m_editor->isVisible());
    QTest::keyClicks(control<QLineEdit>(u"nameEdit"_s), u" lost"_s);
    QTest::keyClick(control<QLineEdit>(u"nameEdit"_s), Qt::Key_Escape);
    QVERIFY(!m_editor->isVisible());
    QCOMPARE(m_items->currentItem()->getItem(), u"Widget"_s);

    m_items->edit(nullptr);
    QTRY_VERIFY(m_editor->isVisible());
    QTest::keyClicks(control<QLineEdit>(u"nameEdit"_s), u" kept"_s);
    QVERIFY(m_editor->close());
    QVERIFY(!m_items->isEditorShown());
    QCOMPARE(m_items->currentItem()->getItem(), u"Widget kept"_s);
}

void tst_ItemEditor::imageWellTakesDroppedPictures()
{
    open();
    auto *well = m_editor->findChild<ItemImageWell *>(u"imageWell"_s);
    QVERIFY(well);
    QVERIFY(!control<QPushButton>(u"deleteImageButton"_s)->isEnabled());
    QImage red(8, 8, QImage::Format_RGB32);
    red.fill(Qt::red);
    const QString png = m_app->home(u"red.png"_s);
    QVERIFY(red.save(png));
    QVERIFY(!dropFiles(well, {m_app->home(u"none.txt"_s)}));
    QVERIFY(dropFiles(well, {png}));
    QCOMPARE(m_items->editorState().image.pixelColor(0, 0), QColor(Qt::red));
    QVERIFY(control<QPushButton>(u"deleteImageButton"_s)->isEnabled());
    press("deleteImageButton");
    QVERIFY(well->image().isNull());
}

void tst_ItemEditor::theListOpensTheEditorAndFilters()
{
    auto *controls = new ItemListControls(m_items, m_window.get());
    m_window->selectTab(u"3"_s);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_app->addItem(u"P1"_s, u"Widget"_s, u"4"_s);
    m_app->addItem(u"P2"_s, u"Gadget"_s, u"0"_s);

    QTest::keyClicks(controls->searchBox(), u"GADGET"_s);
    QCOMPARE(m_items->editorState().searchText, u"GADGET"_s);
    QCOMPARE(m_items->numberOfRowsInTableView(), 1);
    controls->stockFilter()->setCurrentIndex(1);
    QCOMPARE(m_items->editorState().stockFilter.index, 1);
    QCOMPARE(m_items->numberOfRowsInTableView(), 0);
    controls->searchBox()->clear();
    controls->stockFilter()->setCurrentIndex(0);

    QAbstractItemView *view = m_window->viewFor(m_items);
    clickRow(view, view->model()->index(1, 0));
    QTRY_VERIFY(m_editor->isVisible());
    QCOMPARE(control<QLineEdit>(u"nameEdit"_s)->text(), u"Gadget"_s);
    press("cancelButton");

    for (QAction *action : m_window->mainToolbar()->actions())
        if (action->objectName() == u"itemItemIdentifier"_s)
            action->trigger();
    QTRY_VERIFY(m_editor->isVisible());
    QVERIFY(m_items->isCreating());
}

QTEST_MAIN(tst_ItemEditor)
#include "tst_itemeditor.moc"
