#include "ui/PrefsWindow.h"

#include "core/Platform.h"
#include "prefs/PrefsController.h"

#include "ui_PrefsWindow.h"

#include <QButtonGroup>
#include <QColorDialog>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QShortcut>

#include <array>

namespace {

using Field = QString &(*)(PrefsControls &);

struct LineBinding
{
    QLineEdit *edit;
    Field field;
};

struct TextBinding
{
    QPlainTextEdit *edit;
    Field field;
};

std::array<LineBinding, 12> lineBindings(const Ui::PrefsWindow &ui)
{
    return {{
        {ui.taxRateEdit, [](PrefsControls &c) -> QString & { return c.taxRate; }},
        {ui.taxStatementEdit, [](PrefsControls &c) -> QString & { return c.taxStatement; }},
        {ui.currencyEdit, [](PrefsControls &c) -> QString & { return c.currency; }},
        {ui.orderPrefixEdit, [](PrefsControls &c) -> QString & { return c.orderPrefix; }},
        {ui.itemPrefixEdit, [](PrefsControls &c) -> QString & { return c.itemPrefix; }},
        {ui.stockWarnEdit, [](PrefsControls &c) -> QString & { return c.stockWarn; }},
        {ui.termOrderEdit, [](PrefsControls &c) -> QString & { return c.terms.order; }},
        {ui.termOrdersEdit, [](PrefsControls &c) -> QString & { return c.terms.orders; }},
        {ui.termBomEdit, [](PrefsControls &c) -> QString & { return c.terms.bom; }},
        {ui.termItemEdit, [](PrefsControls &c) -> QString & { return c.terms.item; }},
        {ui.termItemsEdit, [](PrefsControls &c) -> QString & { return c.terms.items; }},
        {ui.dbLocationEdit, [](PrefsControls &c) -> QString & { return c.dbLocation; }},
    }};
}

std::array<TextBinding, 3> textBindings(const Ui::PrefsWindow &ui)
{
    return {{
        {ui.statusesEdit, [](PrefsControls &c) -> QString & { return c.statuses; }},
        {ui.invoiceCategoriesEdit, [](PrefsControls &c) -> QString & { return c.invoiceCategories; }},
        {ui.contactTypesEdit, [](PrefsControls &c) -> QString & { return c.contactTypes; }},
    }};
}

} // namespace

PrefsWindow::PrefsWindow(PrefsController *controller, QWidget *parent)
    : QDialog(parent), m_controller(controller), m_ui(std::make_unique<Ui::PrefsWindow>())
{
    m_ui->setupUi(this);
    setObjectName(QStringLiteral("prefsWindow"));
    setWindowTitle(lwTr("Preferences"));

    auto *matrix = new QButtonGroup(this);
    matrix->addButton(m_ui->dayFirstRadio, 0);
    matrix->addButton(m_ui->monthFirstRadio, 1);
    connect(matrix, &QButtonGroup::idClicked, this,
            [this](int column) { m_controller->controls().dateFormatColumn = column; });

    connectEdits();

    connect(m_ui->colourStatusCombo, &QComboBox::activated, this, [this](int index) {
        m_controller->setColourStatusIndex(index);
        m_controller->statusSelectorHasChanged(this);
    });
    connect(m_ui->colourButton, &QPushButton::clicked, this, &PrefsWindow::chooseColour);

    connect(m_ui->chooseDbButton, &QPushButton::clicked, this, [this] { m_controller->selectDbLocation(this); });
    connect(m_ui->createDbButton, &QPushButton::clicked, this, [this] { m_controller->createDbLocation(this); });
    connect(m_ui->defaultDbButton, &QPushButton::clicked, this, [this] { m_controller->setDbLocationToDefault(this); });

    connect(m_ui->buttonBox->button(QDialogButtonBox::Ok), &QPushButton::clicked, this,
            [this] { m_controller->OKButton(this); });
    connect(m_ui->buttonBox->button(QDialogButtonBox::Cancel), &QPushButton::clicked, this, &QWidget::close);
    QPushButton *help = m_ui->buttonBox->addButton(QDialogButtonBox::Help);
    help->setObjectName(QStringLiteral("helpButton"));
    connect(help, &QPushButton::clicked, this, &PrefsWindow::helpRequested);
    connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, this, &PrefsWindow::helpRequested);

    connect(m_controller, &PrefsController::controlsChanged, this, &PrefsWindow::refresh);
    connect(m_controller, &PrefsController::termsApplied, this, &PrefsWindow::applyTerms);
    connect(m_controller, &PrefsController::listsPopulated, this, &PrefsWindow::refreshColourAssignment);
    connect(m_controller, &PrefsController::wellColourChanged, this, &PrefsWindow::showWellColour);
    connect(m_controller, &PrefsController::openWindowRequested, this, &PrefsWindow::bringToFront);
    connect(m_controller, &PrefsController::closeWindowRequested, this, &QWidget::hide);

    refresh();
    applyTerms();
    // Wide enough for a database path under the home folder.
    resize(qMax(sizeHint().width(), 620), sizeHint().height());
}

PrefsWindow::~PrefsWindow() = default;

void PrefsWindow::connectEdits()
{
    for (const LineBinding &binding : lineBindings(*m_ui)) {
        // textEdited: only the user's typing, never the window's own refresh.
        connect(binding.edit, &QLineEdit::textEdited, this,
                [this, field = binding.field](const QString &text) { field(m_controller->controls()) = text; });
    }
    for (const TextBinding &binding : textBindings(*m_ui)) {
        connect(binding.edit, &QPlainTextEdit::textChanged, this, [this, edit = binding.edit, field = binding.field] {
            if (!m_refreshing)
                field(m_controller->controls()) = edit->toPlainText();
        });
    }
}

void PrefsWindow::refresh()
{
    m_refreshing = true;
    PrefsControls &controls = m_controller->controls();
    for (const LineBinding &binding : lineBindings(*m_ui)) {
        // Only a changed text is set, so the cursor stays where the user left it.
        const QString &text = binding.field(controls);
        if (binding.edit->text() != text)
            binding.edit->setText(text);
    }
    for (const TextBinding &binding : textBindings(*m_ui)) {
        const QString &text = binding.field(controls);
        if (binding.edit->toPlainText() != text)
            binding.edit->setPlainText(text);
    }
    (controls.dateFormatColumn == 1 ? m_ui->monthFirstRadio : m_ui->dayFirstRadio)->setChecked(true);
    m_refreshing = false;
    refreshColourAssignment();
}

void PrefsWindow::applyTerms()
{
    // Taken at start-up only, like the other windows' titles.
    const PrefsTerms &terms = m_controller->appliedTerms();
    m_ui->tabs->setTabText(m_ui->tabs->indexOf(m_ui->ordersTab), terms.orders);
    m_ui->tabs->setTabText(m_ui->tabs->indexOf(m_ui->itemsTab), terms.items);
}

void PrefsWindow::refreshColourAssignment()
{
    QComboBox *combo = m_ui->colourStatusCombo;
    QStringList shown;
    for (int i = 0; i < combo->count(); ++i)
        shown << combo->itemText(i);
    if (shown != m_controller->colourStatusItems()) {
        combo->clear();
        combo->addItems(m_controller->colourStatusItems());
    }
    combo->setCurrentIndex(m_controller->colourStatusIndex());
    const bool any = m_controller->colourStatusIndex() >= 0;
    combo->setEnabled(any);
    m_ui->colourButton->setEnabled(any);
    showWellColour();
}

void PrefsWindow::showWellColour()
{
    const int side = m_ui->colourButton->iconSize().height();
    QPixmap swatch(side * 2, side);
    swatch.fill(m_controller->wellColour());
    // Outlined, so that white (no colour yet) still shows as a well.
    QPainter painter(&swatch);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(swatch.rect().adjusted(0, 0, -1, -1));
    m_ui->colourButton->setIcon(QIcon(swatch));
}

void PrefsWindow::chooseColour()
{
    const QString status = m_controller->selectedColourStatus();
    const QColor colour = QColorDialog::getColor(m_controller->wellColour(), this, lwTr("Colour for %1").arg(status));
    if (colour.isValid())
        m_controller->setColorForStatus(colour);
}

void PrefsWindow::bringToFront()
{
    show();
    raise();
    activateWindow();
}
