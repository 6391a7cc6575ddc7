#pragma once

#include "core/PopUp.h"

#include <QString>

class Contact;

// What the controls of a contact editor hold: the main contact editor, the
// company editor and the company contact editor each use the fields their
// window shows. The contact manager's also holds the contacts list's search
// field and type filter.
struct ContactEditorState
{
    PopUp title;
    QString name;
    QString jobTitle;
    PopUp company; // the company contact editor's pop-up of company names
    QString add1;
    QString add2;
    QString add3;
    QString postcode;
    QString phone;
    QString extension;
    QString mobile;
    QString fax;
    QString email;
    QString website;
    PopUp type;
    QString comments; // multi-line

    // Shows the fields the contact and company editors share: title, name,
    // comments, address, post code, e-mail, fax, mobile, phone and the type.
    void showContact(const Contact &contact);

    // --- the contacts list ----------------------------------------------------
    QString searchText;
    PopUp filter;
};
