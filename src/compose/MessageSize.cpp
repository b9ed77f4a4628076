#include "compose/MessageSize.h"

#include "compose/GSMCharSet.h"
#include "core/Numbers.h"
#include "core/TextRules.h"
#include "core/Trap.h"

#include <algorithm>

namespace {

/// A quantity that does not fit keeps what it had.
void Store(qint16& quantity, qint64 value) {
    Trap([&] { quantity = Numbers::ToInt16(value); });
}

}  // namespace

MessageSize MessageSize::Measure(const QString& text, const QString& tailText, qint16 maximum) {
    MessageSize size;
    Store(size.TailLen, tailText.size() + 1);
    Store(size.Available, std::max(maximum, SinglePartLimit) - size.TailLen);
    Trap([&] { size.Used = mdlGSMCharSet::GSMTextLength(text); });
    Store(size.Remaining, size.Available - size.Used);

    qsizetype kept = text.size();
    while (size.Remaining < 0 && kept > 0) {
        --kept;
        const int units = mdlGSMCharSet::IsGSMExtensionChar(text[kept]) ? 2 : 1;
        Store(size.Used, size.Used - units);
        Store(size.Remaining, size.Available - size.Used);
    }
    size.Text = text.left(kept);
    size.IsCut = kept < text.size();

    Store(size.TotalLen, size.Used + size.TailLen + 1);
    if (size.TotalLen > SinglePartLimit) {
        Store(size.Parts, size.TotalLen / PartSize + 1);
    }
    return size;
}

QString BuildTailText(const QString& signature, const QString& tail) {
    const QString name = Text::Trim(signature);
    const QString dash = QStringLiteral(" - ");
    return name.isEmpty() ? dash + tail : QStringLiteral(": ") + name + dash + tail;
}
