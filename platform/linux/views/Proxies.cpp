#include "platform/linux/views/Proxies.h"

#include <algorithm>
#include <utility>

namespace pelistra::linux {

namespace {

constexpr qsizetype longestHelp = 600;
constexpr qsizetype longestLine = 60;

} // namespace

void setHelp(QWidget& widget, const std::string& help) {
    QString plain = QString::fromStdString(help);
    if (plain.size() > longestHelp) {
        // What comes after the last line break says how to use the thing, so it stays.
        const qsizetype tail = plain.lastIndexOf(u'\n');
        const QString end =
            tail > 0 && plain.size() - tail < longestHelp / 2 ? plain.mid(tail) : QString();
        plain = plain.left(longestHelp / 2).trimmed() + u'…' + end;
    }
    if (!plain.isEmpty()) {
        // Left to itself, the help would break lines that fit on any screen.
        const auto lines = plain.split(u'\n');
        const bool isShort = std::ranges::all_of(
            lines, [](const QString& line) { return line.size() <= longestLine; });
        const QString wrapping = isShort ? QStringLiteral("pre") : QStringLiteral("pre-wrap");
        plain = QStringLiteral("<div style=\"white-space:%1\">").arg(wrapping) +
                plain.toHtmlEscaped() + QStringLiteral("</div>");
    }
    if (widget.toolTip() != plain) {
        widget.setToolTip(plain);
    }
}

TextProxy::TextProxy(QWidget* parent) : QLabel(parent) {
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setTextFormat(Qt::PlainText);
}

void TextProxy::setContent(const QString& text, const std::string& label, const std::string& help) {
    if (this->text() != text) {
        setText(text);
    }
    const QString name = label.empty() ? text : QString::fromStdString(label);
    if (accessibleName() != name) {
        setAccessibleName(name);
    }
    setAttribute(Qt::WA_TransparentForMouseEvents, help.empty());
    setHelp(*this, help);
}

ToggleProxy::ToggleProxy(QWidget* parent, std::function<void()> stateChanged,
                         std::function<void(bool)> moved)
    : ControlProxy(parent, std::move(stateChanged)), moved_(std::move(moved)) {}

void ToggleProxy::nextCheckState() {
    const bool wanted = !isChecked();
    setChecked(wanted);
    tell();
    // A copy: the action may take this widget down.
    const auto moved = moved_;
    moved(wanted);
}

} // namespace pelistra::linux
