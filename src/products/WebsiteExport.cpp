#include "products/WebsiteExport.h"

#include "core/DatabasePaths.h"
#include "core/Log.h"
#include "core/lwDataSource.h"
#include "core/NumberText.h"
#include "core/Platform.h"
#include "core/PropertyListWriter.h"
#include "products/Item.h"

#include <QFileInfo>

namespace {

// A code names a file directly inside "objects"; anything that could climb
// out of it, or name the folder itself, is never written.
bool codeStaysInObjectsFolder(const QString &code)
{
    // An empty code or one with ".." but no separator still names a file there.
    return !code.contains(QLatin1Char('/')) && !code.contains(QLatin1Char('\\')) && !code.contains(QChar(u'\0'));
}

// The folder that holds the path: trailing slashes are ignored, "/" stays
// "/", and a bare name has none ("").
QString parentFolder(QString path)
{
    while (path.size() > 1 && path.endsWith(QLatin1Char('/')))
        path.chop(1);
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    if (slash < 0)
        return QString();
    return slash == 0 ? QStringLiteral("/") : path.left(slash);
}

} // namespace

QString WebsiteExport::fragment(const Item &item)
{
    QString html = QStringLiteral("<div class = \"singlelinepayment\"><div class = \"price\">");
    html += item.getVariation();
    if (!item.getVariation().isEmpty())
        html += QStringLiteral(" : ");
    html += QStringLiteral("<strong>&pound;") + item.getPrice() + QStringLiteral("</strong>");
    // Whole pounds show without pence. The removal runs over everything built
    // so far, the variation included; the site's pages rely on that.
    html.remove(QStringLiteral(".00"));

    const int stock = NumberText::intValue(item.getQty());
    const QString &method = item.getQuantityMethod();
    if (method == QLatin1String("Just when out of stock")) {
        if (stock < 1)
            html += QStringLiteral("<% smt:OOS %>");
    } else if (method == QLatin1String("Out of stock / in stock")) {
        html += stock < 1 ? QStringLiteral("<% smt:OOS %>") : QStringLiteral("<% smt:instock %>");
    } else if (method == QLatin1String("Show quantity")) {
        // The class names are the other way round from the template tags
        // above: the site's style sheets are written for this.
        html += (stock < 1 ? QStringLiteral("<span class = \"instock\">Quantity:")
                           : QStringLiteral("<span class = \"OOS\">Quantity:")) +
                item.getQty() + QStringLiteral("</span>");
    }
    html += QStringLiteral("</div>\n");

    if (stock > 0 || !item.getHideButtonCode())
        html += item.getButtonCode();
    html += QStringLiteral("\n<div style = \"clear:both; height:1px;\"></div>\n</div>");
    return html;
}

QString WebsiteExport::objectPath(const Item &item)
{
    const QString &folder = item.getWebsiteFolder();
    // An empty folder gives a relative path, as appending a path component
    // to an empty path always has, rather than one at the root.
    const bool needsSlash = !folder.isEmpty() && !folder.endsWith(QLatin1Char('/'));
    return folder + (needsSlash ? QStringLiteral("/") : QString()) + QStringLiteral("objects/LwkItem") + item.getCode();
}

bool WebsiteExport::exportItemAsSitemossObject(const Item &item)
{
    const QString path = objectPath(item);
    if (!codeStaysInObjectsFolder(item.getCode())) {
        lwLog(QStringLiteral("Not exporting the item with the code \"") + item.getCode() +
              QStringLiteral("\": its page object would not be a file of the objects folder (") + path +
              QStringLiteral(")"));
        return false;
    }
    // A link in the object's place could lead the write anywhere outside the
    // site; the objects folder itself may be a link, which is the user's choice.
    if (QFileInfo(path).isSymLink()) {
        lwLog(QStringLiteral("Not exporting the item with the code \"") + item.getCode() +
              QStringLiteral("\": its page object is a symbolic link (") + path + QStringLiteral(")"));
        return false;
    }
    if (!PropertyListWriter::writeFile(path, fragment(item).toUtf8())) {
        lwLog(QStringLiteral("Unsuccessful exporting data to ") + path + QStringLiteral("\n"));
        return false;
    }
    return true;
}

QStringList WebsiteExport::exportAsSitemossObjects(const lwDataSource &items, Platform *platform)
{
    QStringList failed;
    for (const auto &record : items.records()) {
        const auto *item = dynamic_cast<const Item *>(record.get());
        if (item && item->getExportSitemoss() && !exportItemAsSitemossObject(*item))
            failed << objectPath(*item);
    }
    if (platform)
        platform->inform(QStringLiteral("Export"), QStringLiteral("Finished exporting items."));
    return failed;
}

QString WebsiteExport::selectWebsiteLocation(Platform *platform, const QString &currentFolder)
{
    if (!platform)
        return currentFolder;
    // The panel is a real file dialog, which knows nothing of "~".
    Platform::Panel panel(QStringLiteral("Choose a Sitemoss website folder"));
    panel.directory = DatabasePaths::expandTilde(parentFolder(currentFolder));
    panel.chooseDirectories = true;
    panel.prompt = lwTr("Choose");
    panel.nameLabel = lwTr("Folder name");
    const QString chosen = platform->openPanel(panel);
    // The folder panel answers only a folder the user confirmed.
    return chosen.isEmpty() ? currentFolder : chosen;
}
