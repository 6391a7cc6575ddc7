#include "ui/ContactWindowBase.h"

#include "contacts/ContactEditorState.h"
#include "core/Platform.h"
#include "core/lwEditorManager.h"
#include "reports/ReportManager.h"
#include "ui/integrityTableView.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

struct FieldRow
{
    ContactWindowBase::Field field;
    const char *label;
    const char *objectName;
};

const FieldRow kFields[] = {
    {ContactWindowBase::Field::Title, "&Title:", "titleCombo"},
    {ContactWindowBase::Field::Name, "&Name:", "nameEdit"},
    {ContactWindowBase::Field::JobTitle, "&Job title:", "jobTitleEdit"},
    {ContactWindowBase::Field::Company, "Co&mpany:", "companyCombo"},
    {ContactWindowBase::Field::Add1, "&Address:", "add1Edit"},
    {ContactWindowBase::Field::Add2, "", "add2Edit"},
    {ContactWindowBase::Field::Add3, "&Town:", "add3Edit"},
    {ContactWindowBase::Field::Postcode, "&Post code:", "postcodeEdit"},
    {ContactWindowBase::Field::Phone, "P&hone:", "phoneEdit"},
    {ContactWindowBase::Field::Extension, "E&xtension:", "extensionEdit"},
    {ContactWindowBase::Field::Mobile, "&Mobile:", "mobileEdit"},
    {ContactWindowBase::Field::Fax, "&Fax:", "faxEdit"},
    {ContactWindowBase::Field::Email, "&Email:", "emailEdit"},
    {ContactWindowBase::Field::Website, "&Website:", "websiteEdit"},
    {ContactWindowBase::Field::Type, "T&ype:", "typeCombo"},
    {ContactWindowBase::Field::Comments, "&Comments:", "commentsEdit"},
};

} // namespace

ContactWindowBase::ContactWindowBase(lwEditorManagerBase *manager, ContactEditorState &s, const QList<Field> &fields,
                                     QWidget *parent)
    : lwEditorWindow(manager, parent)
{
    auto *outer = new QVBoxLayout(this);
    auto *columns = new QHBoxLayout;
    auto *left = new QFormLayout;
    auto *right = new QFormLayout;
    columns->addLayout(left, 1);
    columns->addSpacing(16);
    columns->addLayout(right, 1);
    outer->addLayout(columns);

    // Who and where on the left, how to reach them on the right.
    for (const FieldRow &row : kFields) {
        if (!fields.contains(row.field))
            continue;
        QWidget *control = nullptr;
        switch (row.field) {
        case Field::Title:
            control = new QComboBox(this);
            bind(static_cast<QComboBox *>(control), s.title);
            break;
        case Field::Company:
            control = new QComboBox(this);
            bind(static_cast<QComboBox *>(control), s.company);
            break;
        case Field::Type:
            control = new QComboBox(this);
            bind(static_cast<QComboBox *>(control), s.type);
            break;
        case Field::Comments: {
            auto *text = new QPlainTextEdit(this);
            text->setTabChangesFocus(true);
            text->setMinimumHeight(70);
            bind(text, s.comments);
            control = text;
            break;
        }
        default: {
            QString *const texts[] = {nullptr,   &s.name,      &s.jobTitle, nullptr, &s.add1,
                                      &s.add2,   &s.add3,      &s.postcode, &s.phone, &s.extension,
                                      &s.mobile, &s.fax,       &s.email,    &s.website};
            auto *edit = new QLineEdit(this);
            bind(edit, *texts[int(row.field)]);
            control = edit;
        }
        }
        control->setObjectName(QLatin1String(row.objectName));
        const bool onLeft = row.field <= Field::Postcode;
        (onLeft ? left : right)->addRow(lwTr(row.label), control);
        m_fields.emplace(row.field, control);
    }
    if (QWidget *first = field(Field::Name))
        setFirstField(first);

    m_lists = new QHBoxLayout;
    outer->addLayout(m_lists, 1);
    m_buttons = new QHBoxLayout;
    m_buttons->addWidget(makeHelpButton());
    m_buttons->addStretch(1);
    auto *cancel = new QPushButton(lwTr("Cancel"), this);
    cancel->setObjectName(QStringLiteral("cancelButton"));
    auto *ok = new QPushButton(lwTr("OK"), this);
    ok->setObjectName(QStringLiteral("okButton"));
    ok->setDefault(true);
    m_buttons->addWidget(cancel);
    m_buttons->addWidget(ok);
    outer->addLayout(m_buttons);
    connectAction(ok, manager, &lwEditorManagerBase::finish);
    connectAction(cancel, manager, &lwEditorManagerBase::cancel);
    resize(760, 520);
}

QWidget *ContactWindowBase::field(Field which) const
{
    const auto it = m_fields.find(which);
    return it == m_fields.end() ? nullptr : it->second;
}

QPushButton *ContactWindowBase::addButton(const QString &text, const QString &objectName,
                                          const std::function<void()> &action)
{
    auto *button = new QPushButton(text, this);
    button->setObjectName(objectName);
    button->setAutoDefault(false);
    // Before the stretch that pushes Cancel and OK to the right.
    m_buttons->insertWidget(m_buttons->count() - 3, button);
    connect(button, &QPushButton::clicked, this, [this, action] { run(action); });
    return button;
}

QTableView *ContactWindowBase::addList(const QString &title, const QString &objectName, QAbstractItemModel *model)
{
    auto *box = new QGroupBox(title, this);
    auto *layout = new QVBoxLayout(box);
    auto *table = new integrityTableView(box);
    table->setObjectName(objectName);
    if (model)
        table->setModel(model);
    table->horizontalHeader()->setStretchLastSection(true);
    layout->addWidget(table);
    m_lists->addWidget(box);
    return table;
}

void ContactWindowBase::setReports(ReportManager *items, ReportManager *orders)
{
    const std::pair<ReportManager *, const char *> lists[] = {{items, "itemTableView"}, {orders, "orderTableView"}};
    lwEditorManagerBase *editor = editorManager();
    for (const auto &[report, tableName] : lists) {
        auto *table = findChild<QTableView *>(QLatin1String(tableName));
        if (!report || !table)
            continue;
        // "currentcontact" is the contact open in this window.
        report->setCurrentContactSource([editor] {
            const dataObject *contact = editor->currentRecord();
            return contact ? QString::number(contact->getID()) : QStringLiteral("-1");
        });
        table->setModel(report);
        connect(report, &ReportManager::reportRun, table, [report, table] {
            for (int i = 0; i < report->columns().size(); ++i)
                table->setColumnWidth(i, report->columns().at(i).width);
        });
    }
    connect(editor, &lwEditorManagerBase::editorShown, this, [items = QPointer(items), orders = QPointer(orders)] {
        if (items)
            items->doReport(QStringLiteral("ItemsforOpenContact"));
        if (orders)
            orders->doReport(QStringLiteral("OrdersforOpenContact"));
    });
}
