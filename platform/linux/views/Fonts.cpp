#include "platform/linux/views/Fonts.h"

#include <algorithm>
#include <cmath>

#include <QString>
#include <QStringList>

namespace pelistra::linux {

namespace {

QFont::Weight qtWeight(ui::Weight weight) {
    switch (weight) {
    case ui::Weight::Medium:
        return QFont::Medium;
    case ui::Weight::Semibold:
        return QFont::DemiBold;
    case ui::Weight::Bold:
        return QFont::Bold;
    case ui::Weight::Regular:
        break;
    }
    return QFont::Normal;
}

} // namespace

QFont qtFont(const ui::Font& font, const Look& look) {
    QStringList families;
    if (!look.fontFamily.empty()) {
        families << QString::fromStdString(look.fontFamily);
    }
    // One family for both scripts looks calmer than a mixture, so the Chinese ones come before
    // whatever the system calls its sans serif.
    families << QStringLiteral("Inter") << QStringLiteral("Noto Sans CJK SC")
             << QStringLiteral("Source Han Sans SC") << QStringLiteral("Noto Sans SC")
             << QStringLiteral("WenQuanYi Micro Hei") << QStringLiteral("Sans Serif");
    QFont result;
    result.setFamilies(families);
    result.setPixelSize(
        std::max(1, static_cast<int>(std::lround(ui::pointSize(font, look.bodySize)))));
    result.setWeight(qtWeight(ui::effectiveWeight(font)));
    result.setStyleHint(QFont::SansSerif);
    result.setHintingPreference(QFont::PreferNoHinting);
    return result;
}

} // namespace pelistra::linux
