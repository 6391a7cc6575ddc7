#pragma once

#include "core/dataObject.h"

#include <QString>

// One person or business: a stand-alone person ("Individual"), a business
// ("Company"), or a person at a business ("Company Contact") whose company
// field holds the id of that business's record. Text setters ignore a null
// string and keep the old value.
class Contact : public dataObject
{
public:
    Contact();

    // The text, ignoring case, in the address, notes, means of contact, job
    // title, kind, name, title, type or website; the company name is left out.
    bool contains(const QString &text) const override;
    // Exact names; "address" and "surname" are computed, "company" is the
    // company id as text, an unknown name reads "". Note "jobTitle" against
    // the lower-case "companyname": both are the exact keys.
    QString getFieldByName(const QString &name) const override;
    // "companyname", "address", "surname" and unknown names are ignored;
    // "company" and "id" take the integer value of the text.
    bool setFieldByName(const QString &name, const QString &value) override;

    void makeCompany();
    // add1, add2, add3 and postcode joined by single blanks, empty ones included.
    QString getAddress() const;
    // The post code alone when add1 is empty, else "add1 ... postcode".
    QString getShortAddress() const;
    // A company's whole name; a person's last word (after the last blank).
    QString getSurname() const;

    const QString &getAdd1() const { return m_add1; }
    const QString &getAdd2() const { return m_add2; }
    const QString &getAdd3() const { return m_add3; }
    const QString &getComments() const { return m_comments; }
    const QString &getCompanyName() const { return m_companyName; }
    int getCompany() const { return m_company; }
    const QString &getEmail() const { return m_email; }
    const QString &getExtension() const { return m_extension; }
    const QString &getFax() const { return m_fax; }
    const QString &getJobTitle() const { return m_jobTitle; }
    const QString &getKind() const { return m_kind; }
    const QString &getMobile() const { return m_mobile; }
    const QString &getName() const { return m_name; }
    const QString &getPhone() const { return m_phone; }
    const QString &getPostcode() const { return m_postcode; }
    const QString &getTitle() const { return m_title; }
    const QString &getType() const { return m_type; }
    const QString &getWebsite() const { return m_website; }

    void setAdd1(const QString &value);
    void setAdd2(const QString &value);
    void setAdd3(const QString &value);
    void setComments(const QString &value);
    void setCompanyName(const QString &value);
    void setCompany(int companyId);
    void setEmail(const QString &value);
    void setExtension(const QString &value);
    void setFax(const QString &value);
    void setJobTitle(const QString &value);
    void setKind(const QString &value);
    void setMobile(const QString &value);
    void setName(const QString &value);
    void setPhone(const QString &value);
    void setPostcode(const QString &value);
    void setTitle(const QString &value);
    void setType(const QString &value);
    void setWebsite(const QString &value);

    // Bumped whenever any contact's name, kind, type or company changes, so that
    // the contact manager can tell cheaply whether its outline is stale.
    static quint64 linkGeneration();

private:
    QString m_add1 = lwEmpty();
    QString m_add2 = lwEmpty();
    QString m_add3 = lwEmpty();
    QString m_comments = lwEmpty();
    QString m_companyName = lwEmpty();
    int m_company = 0;
    QString m_email = lwEmpty();
    QString m_extension = lwEmpty();
    QString m_fax = lwEmpty();
    QString m_jobTitle = lwEmpty();
    QString m_kind = QStringLiteral("Individual");
    QString m_mobile = lwEmpty();
    QString m_name = lwEmpty();
    QString m_phone = lwEmpty();
    QString m_postcode = lwEmpty();
    QString m_title = lwEmpty();
    QString m_type = QStringLiteral("Customer");
    QString m_website = lwEmpty();
};
