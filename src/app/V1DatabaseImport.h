#pragma once

#include <QString>

#include <array>
#include <functional>

class Ledgerwick;

// Replaces the whole database held by the controller with the records of a
// version-1 database file (one XML file: records at depth 3 named "product",
// "material", "action", "contact", "order" or "bill", their fields at depth
// 4), then copies the old attachments folder into the standard bundle.
// Before anything is emptied the bundle's current files are backed up; when
// that fails nothing is imported. Nothing is saved: the next save writes the
// imported records.
class V1DatabaseImport
{
public:
    // Makes a backup of the bundle's current files; answers its stamp (the
    // folder name under "Backups"), or "" with the reason.
    using Backup = std::function<QString(QString *error)>;

    // How the walk of the file ended.
    enum class Ending {
        Complete,  // the outermost element closed, or the file was empty
        Truncated, // the file stopped inside an element
        NotAscii,  // a value held bytes that are not 7-bit ASCII
        TooLong,   // a tag or a value was longer than the reader takes
    };

    // The record kinds in the order of their element names.
    static constexpr int kKinds = 6;
    static constexpr std::array<const char *, kKinds> kParents = {"product", "material", "action",
                                                                  "contact", "order",    "bill"};

    struct Result
    {
        bool imported = false; // false: nothing was touched (no file, or no backup)
        std::array<int, kKinds> counts{};
        Ending ending = Ending::Complete;
        QString backupFolder;
    };

    V1DatabaseImport(Ledgerwick &ledgerwick, Backup backup);

    // The import with its missing-file alert and, when done, one alert that
    // says what came in, how the file ended and where the backup is.
    Result importFile(const QString &path);

    // The bundle the controller reads and writes.
    static QString bundleOf(const Ledgerwick &ledgerwick);
    // "the file is cut short" and so on; "" for a complete file.
    static QString endingText(Ending ending);

private:
    void walk(const QString &path, Result &result);
    void copyAttachments() const;

    Ledgerwick &m_ledgerwick;
    Backup m_backup;
};
