#include "core/lwToolBox.h"

#include "core/EmptyText.h"

QString lwToolBox::replaceSubstring(const QString &target, const QString &replacement, const QString &text)
{
    if (text.isNull())
        return QString();
    // An empty target is never found (QString::indexOf would find it at 0).
    if (target.isEmpty())
        return text;
    const qsizetype at = text.indexOf(target);
    if (at < 0)
        return text;
    QString result;
    result.reserve(text.size() - target.size() + replacement.size());
    result.append(QStringView(text).first(at));
    result.append(replacement);
    result.append(QStringView(text).sliced(at + target.size()));
    // The result of a non-null text is never null, even when it is empty.
    if (result.isNull())
        result = lwEmpty();
    return result;
}

void lwToolBox::myAction(QObject *sender)
{
    Q_UNUSED(sender);
}
