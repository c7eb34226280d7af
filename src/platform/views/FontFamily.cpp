#include "platform/views/FontFamily.h"

#include <algorithm>
#include <array>
#include <memory>

#include <fontconfig/fontconfig.h>

namespace platform {

namespace {

using Pattern = std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)>;

// The names that desktops give to their general font without meaning one: Qt's own, fontconfig's, CSS's.
bool isGeneric(const QString& family) {
    static const std::array names{QStringLiteral("Sans Serif"), QStringLiteral("sans-serif"),
                                  QStringLiteral("Sans"),       QStringLiteral("Serif"),
                                  QStringLiteral("Monospace"),  QStringLiteral("system-ui")};
    return std::any_of(names.begin(), names.end(),
                       [&](const QString& name) { return family.compare(name, Qt::CaseInsensitive) == 0; });
}

// The pattern is the one by which Qt would look for fallbacks, so that the same family comes out.
QString matchOf(const QString& family) {
    const QByteArray name = family.toUtf8();
    const Pattern wanted(FcPatternCreate(), &FcPatternDestroy);
    FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(name.constData()));
    FcPatternAddInteger(wanted.get(), FC_SLANT, FC_SLANT_ROMAN);
    FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    const Pattern match(FcFontMatch(nullptr, wanted.get(), &result), &FcPatternDestroy);
    FcChar8* found = nullptr;
    if (!match || FcPatternGetString(match.get(), FC_FAMILY, 0, &found) != FcResultMatch)
        return family;
    return QString::fromUtf8(reinterpret_cast<const char*>(found));
}

} // namespace

QString concreteFontFamily(const QString& family) {
    if (!isGeneric(family))
        return family;
    static QString lastFamily, lastMatch; // a desktop has one general font
    if (lastFamily != family) {
        lastMatch = matchOf(family);
        lastFamily = family;
    }
    return lastMatch;
}

} // namespace platform
