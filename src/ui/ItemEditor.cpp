#include "ui/ItemEditor.h"

#include "core/Ledgerwick.h"
#include "core/Platform.h"
#include "prefs/PrefsController.h"
#include "products/ItemManager.h"

#include "ui_ItemEditor.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QPushButton>

namespace {

void showPopUp(QComboBox *combo, const ItemEditorState::PopUp &popUp)
{
    QStringList shown;
    for (int i = 0; i < combo->count(); ++i)
        shown << combo->itemText(i);
    if (shown != popUp.entries) {
        combo->clear();
        combo->addItems(popUp.entries);
    }
    combo->setCurrentIndex(popUp.index < combo->count() ? popUp.index : -1);
}

void showText(QLineEdit *edit, const QString &text)
{
    // Only a changed text is set, so the cursor stays where the user left it.
    if (edit->text() != text)
        edit->setText(text);
}

void showText(QPlainTextEdit *edit, const QString &text)
{
    if (edit->toPlainText() != text)
        edit->setPlainText(text);
}

} // namespace

ItemEditor::ItemEditor(ItemManager *manager, QWidget *parent)
    : QDialog(parent), m_manager(manager), m_ui(std::make_unique<Ui::ItemEditor>())
{
    m_ui->setupUi(this);
    setObjectName(QStringLiteral("itemEditorWindow"));
    // A window of its own beside the main window, not a modal sheet.
    setModal(false);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    connect(m_ui->okButton, &QPushButton::clicked, this, [this] { run(&ItemManager::finish); });
    connect(m_ui->cancelButton, &QPushButton::clicked, this, [this] { run(&ItemManager::cancel); });
    connect(m_ui->createSimilarButton, &QPushButton::clicked, this, [this] { run(&ItemManager::createSimilar); });
    connect(m_ui->supplierButton, &QPushButton::clicked, this, [this] { run(&ItemManager::pickSupplier); });
    connect(m_ui->chooseImageButton, &QPushButton::clicked, this, [this] { run(&ItemManager::chooseImage); });
    connect(m_ui->deleteImageButton, &QPushButton::clicked, this, [this] { run(&ItemManager::deleteImage); });
    connect(m_ui->websiteFolderButton, &QPushButton::clicked, this,
            [this] { run(&ItemManager::selectWebsiteLocation); });
    connect(m_ui->imageWell, &ItemImageWell::fileDropped, this, [this](const QString &path) {
        writeBack();
        m_manager->setImageFromFile(path);
    });

    connect(m_manager, &ItemManager::editorStateChanged, this, &ItemEditor::refresh);
    connect(m_manager, &ItemManager::editorShown, this, &ItemEditor::bringToFront);
    connect(m_manager, &ItemManager::editorHidden, this, &QWidget::hide);

    refresh();
    // Wide enough for a website folder under the home folder.
    resize(qMax(sizeHint().width(), 780), qMax(minimumSizeHint().height(), 620));
}

ItemEditor::~ItemEditor() = default;

void ItemEditor::refresh()
{
    const ItemEditorState &s = m_manager->editorState();
    showText(m_ui->codeEdit, s.code);
    showText(m_ui->nameEdit, s.name);
    showText(m_ui->descriptionEdit, s.description);
    showPopUp(m_ui->conditionCombo, s.condition);
    showPopUp(m_ui->statusCombo, s.status);
    showText(m_ui->supplierNameEdit, s.supplierName);
    m_ui->imageWell->setImage(s.image);
    m_ui->deleteImageButton->setEnabled(!s.image.isNull());

    showText(m_ui->priceEdit, s.price);
    showText(m_ui->boughtEdit, s.bought);
    showText(m_ui->shippingEdit, s.shipping);
    showPopUp(m_ui->taxCodeCombo, s.taxCode);
    for (int i = 0; i < m_ui->taxCodeCombo->count(); ++i)
        m_ui->taxCodeCombo->setItemData(i, m_manager->taxCodeDescription(m_ui->taxCodeCombo->itemText(i)),
                                        Qt::ToolTipRole);
    m_ui->taxCodeCombo->setToolTip(m_manager->taxCodeDescription(m_ui->taxCodeCombo->currentText()));
    showText(m_ui->qtyEdit, s.qty);
    showText(m_ui->optimumQtyEdit, s.optimumQty);
    showText(m_ui->warnLevelEdit, s.warnLevel);
    m_ui->decreaseQtyCheck->setChecked(s.decreaseQty);

    m_ui->exportSitemossCheck->setChecked(s.exportSitemoss);
    showText(m_ui->websiteFolderEdit, s.websiteFolder);
    showText(m_ui->variationEdit, s.variation);
    showPopUp(m_ui->quantityMethodCombo, s.quantityMethod);
    showText(m_ui->buttonCodeEdit, s.buttonCode);
    m_ui->hideButtonCodeCheck->setChecked(s.hideButtonCode);
}

void ItemEditor::writeBack()
{
    ItemEditorState &s = m_manager->editorState();
    s.code = m_ui->codeEdit->text();
    s.name = m_ui->nameEdit->text();
    s.description = m_ui->descriptionEdit->toPlainText();
    s.condition.index = m_ui->conditionCombo->currentIndex();
    s.status.index = m_ui->statusCombo->currentIndex();
    s.supplierName = m_ui->supplierNameEdit->text();
    s.price = m_ui->priceEdit->text();
    s.bought = m_ui->boughtEdit->text();
    s.shipping = m_ui->shippingEdit->text();
    s.taxCode.index = m_ui->taxCodeCombo->currentIndex();
    s.qty = m_ui->qtyEdit->text();
    s.optimumQty = m_ui->optimumQtyEdit->text();
    s.warnLevel = m_ui->warnLevelEdit->text();
    s.decreaseQty = m_ui->decreaseQtyCheck->isChecked();
    s.exportSitemoss = m_ui->exportSitemossCheck->isChecked();
    s.websiteFolder = m_ui->websiteFolderEdit->text();
    s.variation = m_ui->variationEdit->text();
    s.quantityMethod.index = m_ui->quantityMethodCombo->currentIndex();
    s.buttonCode = m_ui->buttonCodeEdit->toPlainText();
    s.hideButtonCode = m_ui->hideButtonCodeCheck->isChecked();
    // The image well changes only through the manager (drop, choose, remove).
}

void ItemEditor::run(void (ItemManager::*action)(QObject *))
{
    writeBack();
    (m_manager->*action)(this);
}

void ItemEditor::reject()
{
    run(&ItemManager::cancel);
}

void ItemEditor::closeEvent(QCloseEvent *event)
{
    // Not QDialog's closeEvent, which would reject (drop) the edit.
    if (m_manager->isEditorShown()) {
        writeBack();
        m_manager->windowWillClose(this);
        // Detached, or nothing to commit: the window closes all the same.
        if (m_manager->isEditorShown())
            m_manager->hide(this);
    }
    event->accept();
}

void ItemEditor::bringToFront()
{
    const PrefsController *prefs = m_manager->ledgerwick() ? m_manager->ledgerwick()->getPrefsController() : nullptr;
    const QString term = prefs ? prefs->appliedTerms().item : QString();
    setWindowTitle(term.isEmpty() ? lwTr("Item") : term);
    refresh();
    show();
    raise();
    activateWindow();
}
