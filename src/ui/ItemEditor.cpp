#include "ui/ItemEditor.h"

#include "core/Platform.h"
#include "core/lwController.h"
#include "prefs/PrefsController.h"
#include "products/ItemManager.h"

#include "ui_ItemEditor.h"

#include <QComboBox>
#include <QPushButton>

ItemEditor::ItemEditor(ItemManager *manager, QWidget *parent)
    : lwEditorWindow(manager, parent), m_manager(manager), m_ui(std::make_unique<Ui::ItemEditor>())
{
    m_ui->setupUi(this);
    setObjectName(QStringLiteral("itemEditorWindow"));

    ItemEditorState &s = m_manager->editorState();
    bind(m_ui->codeEdit, s.code);
    bind(m_ui->nameEdit, s.name);
    bind(m_ui->descriptionEdit, s.description);
    bind(m_ui->conditionCombo, s.condition);
    bind(m_ui->statusCombo, s.status);
    bind(m_ui->supplierNameEdit, s.supplierName);
    bind(m_ui->priceEdit, s.price);
    bind(m_ui->boughtEdit, s.bought);
    bind(m_ui->shippingEdit, s.shipping);
    bind(m_ui->taxCodeCombo, s.taxCode);
    bind(m_ui->qtyEdit, s.qty);
    bind(m_ui->optimumQtyEdit, s.optimumQty);
    bind(m_ui->warnLevelEdit, s.warnLevel);
    bind(m_ui->decreaseQtyCheck, s.decreaseQty);
    bind(m_ui->exportSitemossCheck, s.exportSitemoss);
    bind(m_ui->websiteFolderEdit, s.websiteFolder);
    bind(m_ui->variationEdit, s.variation);
    bind(m_ui->quantityMethodCombo, s.quantityMethod);
    bind(m_ui->buttonCodeEdit, s.buttonCode);
    bind(m_ui->hideButtonCodeCheck, s.hideButtonCode);
    // The image well changes only through the manager (drop, choose, remove).
    setFirstField(m_ui->codeEdit);

    connectAction(m_ui->okButton, static_cast<lwEditorManagerBase *>(m_manager), &lwEditorManagerBase::finish);
    connectAction(m_ui->cancelButton, static_cast<lwEditorManagerBase *>(m_manager), &lwEditorManagerBase::cancel);
    connectAction(m_ui->createSimilarButton, m_manager, &ItemManager::createSimilar);
    connectAction(m_ui->supplierButton, m_manager, &ItemManager::pickSupplier);
    connectAction(m_ui->chooseImageButton, m_manager, &ItemManager::chooseImage);
    connectAction(m_ui->deleteImageButton, m_manager, &ItemManager::deleteImage);
    connectAction(m_ui->websiteFolderButton, m_manager, &ItemManager::selectWebsiteLocation);
    m_ui->buttonLayout->insertWidget(0, makeHelpButton());
    connect(m_ui->imageWell, &ItemImageWell::fileDropped, this,
            [this](const QString &path) { run([this, path] { m_manager->setImageFromFile(path); }); });

    refresh();
    // Wide enough for a website folder under the home folder.
    resize(qMax(sizeHint().width(), 780), qMax(minimumSizeHint().height(), 620));
}

ItemEditor::~ItemEditor() = default;

void ItemEditor::refreshExtras()
{
    const ItemEditorState &s = m_manager->editorState();
    m_ui->imageWell->setImage(s.image);
    m_ui->deleteImageButton->setEnabled(!s.image.isNull());
    for (int i = 0; i < m_ui->taxCodeCombo->count(); ++i)
        m_ui->taxCodeCombo->setItemData(i, m_manager->taxCodeDescription(m_ui->taxCodeCombo->itemText(i)),
                                        Qt::ToolTipRole);
    m_ui->taxCodeCombo->setToolTip(m_manager->taxCodeDescription(m_ui->taxCodeCombo->currentText()));
}

QString ItemEditor::editorTitle() const
{
    const PrefsController *prefs = m_manager->ledgerwick() ? m_manager->ledgerwick()->getPrefsController() : nullptr;
    const QString term = prefs ? prefs->appliedTerms().item : QString();
    return term.isEmpty() ? lwTr("Item") : term;
}
