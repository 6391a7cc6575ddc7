// Times the contacts outline of a big shop: 25,000 contacts (5,000 companies
// with three people each and 5,000 individuals). A scroll from top to bottom
// asks every cell of every shown row; after a change the outline's index is
// rebuilt once, on the first question.
//
//   lw-bench-contacts [--runs N]
#include "app/Ledgerwick.h"
#include "contacts/Contact.h"
#include "contacts/ContactManager.h"
#include "core/CliPlatform.h"

#include <QCoreApplication>
#include "BenchTiming.h"

#include <QElapsedTimer>
#include <QLoggingCategory>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("ledgerwick.info=false"));
    const QStringList args = app.arguments();
    const qsizetype runsAt = args.indexOf(QStringLiteral("--runs"));
    const int runs = runsAt > 0 && runsAt + 1 < args.size() ? std::max(1, args.at(runsAt + 1).toInt()) : 5;

    CliPlatform platform;
    Ledgerwick ledgerwick(&platform);
    ContactManager *contacts = ledgerwick.getContactManager();
    for (int c = 0; c < 5000; ++c) {
        auto company = std::make_shared<Contact>();
        company->setName(QStringLiteral("Company %1").arg(c));
        company->makeCompany();
        company->setAdd1(QStringLiteral("%1 Trading Estate").arg(c));
        contacts->add(company);
        contacts->setExpanded(company.get(), true);
        for (int p = 0; p < 3; ++p) {
            auto person = std::make_shared<Contact>();
            person->setName(QStringLiteral("Person %1-%2").arg(c).arg(p));
            person->setKind(QStringLiteral("Company Contact"));
            person->setCompany(company->getID());
            contacts->add(person);
        }
        auto individual = std::make_shared<Contact>();
        individual->setName(QStringLiteral("Individual %1").arg(c));
        contacts->add(individual);
    }

    auto scroll = [contacts] {
        // What a view asks while it shows every row once.
        qsizetype chars = 0;
        const int top = contacts->rowCount();
        for (int row = 0; row < top; ++row) {
            const QModelIndex company = contacts->index(row, 0);
            for (int column = 0; column < contacts->columnCount(); ++column)
                chars += contacts->data(contacts->index(row, column)).toString().size();
            for (int child = 0, n = contacts->rowCount(company); child < n; ++child) {
                const QModelIndex person = contacts->index(child, 0, company);
                chars += contacts->data(person).toString().size() + (contacts->parent(person) == company);
            }
        }
        return chars;
    };
    const double filter = medianSeconds(runs, [contacts] {
        contacts->editorState().searchText = QStringLiteral("company");
        contacts->filter(nullptr);
        contacts->editorState().searchText.clear();
        contacts->filter(nullptr);
    });
    const double rebuildAndScroll = medianSeconds(runs, [&] {
        contacts->getnthContact(0, 1)->setName(QStringLiteral("Renamed")); // stales the index
        scroll();
    });
    const double scrollOnly = medianSeconds(runs, [&] { scroll(); });
    const double lookups = medianSeconds(runs, [contacts] {
        for (int i = 0; i < 20000; ++i)
            contacts->getContactbyName(QStringLiteral("Individual %1").arg(i % 5000));
    });
    std::printf("contacts: %d (%d top-level, %d shown rows)\n", contacts->getCount(), contacts->countCompanies(),
                int(contacts->displayedRows().size()));
    std::printf("%-44s %8.4f s\n", "search and filter twice", filter);
    std::printf("%-44s %8.4f s\n", "index rebuilt, then every cell of the outline", rebuildAndScroll);
    std::printf("%-44s %8.4f s\n", "every cell of the outline", scrollOnly);
    std::printf("%-44s %8.4f s\n", "20,000 look-ups by name", lookups);
    return 0;
}
