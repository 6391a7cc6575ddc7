#include "core/Platform.h"

Platform::~Platform() = default;

void Platform::inform(const QString &title, const QString &text)
{
    alert({title, text, {lwTr("OK")}, AlertStyle::Warning});
}
