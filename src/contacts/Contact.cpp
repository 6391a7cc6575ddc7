#include "contacts/Contact.h"

#include "core/RecordFields.h"

#include "core/NumberText.h"

#include <atomic>

namespace {

using RecordFields::assign;

// One name of the by-name access; a null getter or setter means the name
// cannot be read or written that way.
struct FieldAccess
{
    QLatin1String name;
    QString (*get)(const Contact &);
    void (*set)(Contact &, const QString &);
};

template<const QString &(Contact::*Get)() const, void (Contact::*Set)(const QString &)>
constexpr FieldAccess text(const char *name)
{
    return {QLatin1String(name), [](const Contact &c) { return (c.*Get)(); },
            [](Contact &c, const QString &v) { (c.*Set)(v); }};
}

template<QString (Contact::*Get)() const> constexpr FieldAccess derived(const char *name)
{
    return {QLatin1String(name), [](const Contact &c) { return (c.*Get)(); }, nullptr};
}

// In the order the names are tested; each name appears once.
const FieldAccess kFields[] = {
    text<&Contact::getAdd1, &Contact::setAdd1>("add1"),
    text<&Contact::getAdd2, &Contact::setAdd2>("add2"),
    text<&Contact::getAdd3, &Contact::setAdd3>("add3"),
    derived<&Contact::getAddress>("address"),
    text<&Contact::getComments, &Contact::setComments>("comments"),
    // Kept with the record and shown, but no editor or import sets it.
    {QLatin1String("companyname"), [](const Contact &c) { return c.getCompanyName(); }, nullptr},
    {QLatin1String("company"), [](const Contact &c) { return QString::number(c.getCompany()); },
     [](Contact &c, const QString &v) { c.setCompany(NumberText::intValue(v)); }},
    text<&Contact::getEmail, &Contact::setEmail>("email"),
    text<&Contact::getExtension, &Contact::setExtension>("extension"),
    text<&Contact::getFax, &Contact::setFax>("fax"),
    text<&Contact::getJobTitle, &Contact::setJobTitle>("jobTitle"),
    text<&Contact::getKind, &Contact::setKind>("kind"),
    text<&Contact::getMobile, &Contact::setMobile>("mobile"),
    text<&Contact::getName, &Contact::setName>("name"),
    text<&Contact::getPhone, &Contact::setPhone>("phone"),
    text<&Contact::getPostcode, &Contact::setPostcode>("postcode"),
    derived<&Contact::getSurname>("surname"),
    text<&Contact::getTitle, &Contact::setTitle>("title"),
    text<&Contact::getType, &Contact::setType>("type"),
    text<&Contact::getWebsite, &Contact::setWebsite>("website"),
    {QLatin1String("id"), nullptr, [](Contact &c, const QString &v) { c.setID(NumberText::intValue(v)); }},
};

const FieldAccess *findField(const QString &name)
{
    return RecordFields::find(kFields, name);
}

} // namespace

Contact::Contact() = default;

bool Contact::contains(const QString &text) const
{
    return RecordFields::containsIgnoringCase(text, {&m_add1, &m_add2, &m_add3, &m_postcode, &m_comments, &m_email,
                                                     &m_extension, &m_fax, &m_jobTitle, &m_kind, &m_mobile, &m_name,
                                                     &m_phone, &m_title, &m_type, &m_website});
}

QString Contact::getFieldByName(const QString &name) const
{
    const FieldAccess *field = findField(name);
    if (!field || !field->get)
        return lwEmpty();
    return field->get(*this);
}

bool Contact::setFieldByName(const QString &name, const QString &value)
{
    const FieldAccess *field = findField(name);
    if (field && field->set)
        field->set(*this, value);
    return true;
}

void Contact::makeCompany()
{
    m_kind = QStringLiteral("Company");
}

QString Contact::getAddress() const
{
    return m_add1 + QLatin1Char(' ') + m_add2 + QLatin1Char(' ') + m_add3 + QLatin1Char(' ') + m_postcode;
}

QString Contact::getShortAddress() const
{
    if (m_add1.isEmpty())
        return m_postcode;
    return m_add1 + QStringLiteral(" ... ") + m_postcode;
}

QString Contact::getSurname() const
{
    if (m_kind == QLatin1String("Company"))
        return m_name;
    const qsizetype blank = m_name.lastIndexOf(QLatin1Char(' '));
    return blank < 0 ? m_name : m_name.mid(blank + 1);
}

void Contact::setAdd1(const QString &value)
{
    assign(m_add1, value);
}
void Contact::setAdd2(const QString &value)
{
    assign(m_add2, value);
}
void Contact::setAdd3(const QString &value)
{
    assign(m_add3, value);
}
void Contact::setComments(const QString &value)
{
    assign(m_comments, value);
}
void Contact::setCompanyName(const QString &value)
{
    assign(m_companyName, value);
}
void Contact::setEmail(const QString &value)
{
    assign(m_email, value);
}
void Contact::setExtension(const QString &value)
{
    assign(m_extension, value);
}
void Contact::setFax(const QString &value)
{
    assign(m_fax, value);
}
void Contact::setJobTitle(const QString &value)
{
    assign(m_jobTitle, value);
}
namespace {
std::atomic<quint64> s_linkGeneration{0};
}

quint64 Contact::linkGeneration()
{
    return s_linkGeneration.load(std::memory_order_relaxed);
}

void Contact::setCompany(int companyId)
{
    m_company = companyId;
    s_linkGeneration.fetch_add(1, std::memory_order_relaxed);
}

void Contact::setKind(const QString &value)
{
    assign(m_kind, value);
    s_linkGeneration.fetch_add(1, std::memory_order_relaxed);
}
void Contact::setMobile(const QString &value)
{
    assign(m_mobile, value);
}
void Contact::setName(const QString &value)
{
    assign(m_name, value);
    s_linkGeneration.fetch_add(1, std::memory_order_relaxed);
}
void Contact::setPhone(const QString &value)
{
    assign(m_phone, value);
}
void Contact::setPostcode(const QString &value)
{
    assign(m_postcode, value);
}
void Contact::setTitle(const QString &value)
{
    assign(m_title, value);
}
void Contact::setType(const QString &value)
{
    assign(m_type, value);
    s_linkGeneration.fetch_add(1, std::memory_order_relaxed);
}
void Contact::setWebsite(const QString &value)
{
    assign(m_website, value);
}
