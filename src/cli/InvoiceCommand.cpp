#include "cli/CliCommand.h"
#include "cli/Commands.h"

#include "app/Ledgerwick.h"
#include "contacts/Contact.h"
#include "core/CliPlatform.h"
#include "invoices/CustomInvoiceController.h"
#include "invoices/Stationery.h"
#include "orders/Material.h"
#include "orders/Order.h"
#include "richtext/RichTextTools.h"
#include "richtext/RtfWriter.h"

#include <QFileInfo>
#include <QSaveFile>

#include <cstdio>

namespace {

int fail(const QString &message, int status)
{
    std::fprintf(stderr, "ledgerwick-cli invoice: %s\n", qPrintable(message));
    return status;
}

bool writeBytes(const QString &path, const QByteArray &data, QString *error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit()) {
        *error = QStringLiteral("cannot write \"%1\": %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

} // namespace

int invoiceCommand(const QStringList &args)
{
    CliCommand line("invoice ORDER_ID [--template NAME] --output FILE [--db BUNDLE]",
                    "Fills an invoice template from the stationery folder (default \"Invoice\"; the built-in "
                    "defaults when the folder lacks them) for the order, as the invoice window does, and writes "
                    "it as FILE's extension says: .pdf, .rtf, .rtfd, .html or .txt.");
    line.parser().addPositionalArgument(QStringLiteral("ORDER_ID"), QStringLiteral("the id of the order"));
    line.addValueOption(QStringLiteral("template"), QStringLiteral("NAME"), QStringLiteral("the template's title"));
    line.addValueOption(QStringLiteral("output"), QStringLiteral("FILE"), QStringLiteral("where to write"));
    line.addDbOption();
    if (const int status = line.parse(args, 1, 1); status >= 0)
        return status;
    bool idOk = false;
    const int orderId = line.positional().first().toInt(&idOk);
    if (!idOk)
        return line.usageError(QStringLiteral("ORDER_ID must be an order's id"));
    const QString output = line.value(QStringLiteral("output"));
    const QString suffix = QFileInfo(output).suffix().toLower();
    static const QStringList formats = {QStringLiteral("pdf"), QStringLiteral("rtf"), QStringLiteral("rtfd"),
                                        QStringLiteral("html"), QStringLiteral("txt")};
    if (output.isEmpty() || !formats.contains(suffix))
        return line.usageError(QStringLiteral("--output FILE must end in .pdf, .rtf, .rtfd, .html or .txt"));
    const QString title =
        line.isSet(QStringLiteral("template")) ? line.value(QStringLiteral("template")) : QStringLiteral("Invoice");
    QString templatePath = Stationery::templatePath(title);
    if (templatePath.isEmpty())
        templatePath = Stationery::resourcePackage(title);
    if (templatePath.isEmpty())
        return fail(QStringLiteral("there is no template called \"%1\" in %2 (it has: %3)")
                        .arg(title, Stationery::folder(), Stationery::titles().join(QStringLiteral(", "))),
                    2);

    CliPlatform platform;
    Ledgerwick ledgerwick(&platform);
    if (const int status = openBundle(ledgerwick, line.bundleFolder(), BundleAccess::Look); status >= 0)
        return status;
    const auto *order = dynamic_cast<const Order *>(ledgerwick.getOrderManager()->getItemById(orderId));
    if (!order)
        return fail(QStringLiteral("there is no order with the id %1").arg(orderId), 2);
    const Contact *contact = ledgerwick.getContactbyId(QString::number(order->getContactId()));

    // The order editor's table shows the lines of the current order only.
    lwDataSource *materials = ledgerwick.getBOMManager();
    ledgerwick.setCurrentOrder(orderId);
    for (const auto &record : materials->records())
        if (const auto *orderLine = dynamic_cast<const Material *>(record.get()))
            record->setVisible(orderLine->getOrder() == orderId);
    materials->reloadData();

    CustomInvoiceController invoice;
    invoice.setWhichStationary(title);
    invoice.setbomDataSource(materials, CustomInvoiceController::defaultLineColumns());
    invoice.setOrder(order, contact);
    if (!invoice.fillFrom(templatePath))
        return fail(QStringLiteral("the template \"%1\" could not be read").arg(templatePath), 1);

    QTextDocument *document = invoice.invoiceTextView();
    QString error;
    bool written = false;
    if (suffix == QLatin1String("pdf")) {
        written = RichTextTools::writePdf(document, output, &error);
    } else if (suffix == QLatin1String("rtf") || suffix == QLatin1String("rtfd")) {
        RtfWriter writer;
        written = writer.writeFile(document, output);
        error = writer.errorString();
    } else if (suffix == QLatin1String("html")) {
        written = writeBytes(output, selfContainedHtml(*document).toUtf8(), &error);
    } else {
        QString text = document->toPlainText();
        text.remove(QChar::ObjectReplacementCharacter);
        written = writeBytes(output, (text + QLatin1Char('\n')).toUtf8(), &error);
    }
    return written ? 0 : fail(error, 1);
}
