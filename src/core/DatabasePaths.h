#pragma once

#include <QString>

// Where the standard database bundle and its fixed sub-folders lie under the
// home folder. Item pictures and order attachments are always addressed
// through the standard bundle, whatever database location the preferences
// name, so every caller asks here rather than building the path itself.
class DatabasePaths
{
public:
    // "~/Library/Application Support/Ledgerwick", the tilde expanded.
    static QString applicationSupportFolder();
    // The standard bundle "ledgerwickdatabase.lwkdb" inside that folder.
    static QString standardBundleFolder();
    // The bundle the record files and the lock are read from and written
    // to: the location preference with "~" expanded, or the standard bundle
    // while no location is chosen. The preference is passed in by whoever
    // holds the preferences.
    static QString databaseLocation(const QString &locationPreference);
    // The same, with the location preference "LedgerwickDbLocation" as stored.
    static QString databaseLocation();
    static QString locationPreference();
    // A leading "~" (alone or before "/") becomes the home folder; any other
    // path is returned as it is.
    static QString expandTilde(const QString &path);
    // The bundle's "ItemImages" folder.
    static QString itemImagesFolder();
    // The picture of one item: "<id>.tiff" in the ItemImages folder.
    static QString itemImageFile(int itemId);
    // The folder of report definitions, "reports" beside the standard bundle.
    // It is named "Reports" in some places and "reports" in others; this one
    // spelling is used on disk by every reader and writer.
    static QString reportsFolder();
};
