#pragma once

#include <QChar>
#include <QString>

/// Sizes of texts on the air (GSM 03.38 / 3GPP TS 23.038): the nine characters of the extension table take an
/// escape and a code, two units; every other character counts one.
namespace mdlGSMCharSet {

/// Characters plus one for each that IsGSMExtensionChar accepts, as a 16-bit value. Throws OverflowError.
[[nodiscard]] qint16 GSMTextLength(const QString& text);
/// The euro sign and [ ] ^ { } ~ | \ .
[[nodiscard]] bool IsGSMExtensionChar(QChar character);
/// How many characters of `text` equal `character`.
[[nodiscard]] int CountChar(const QString& text, QChar character);
/// Characters plus one for each euro sign, as a 16-bit value. Throws OverflowError. Nothing displayed goes
/// through it.
[[nodiscard]] qint16 SMSLength(const QString& text);

}  // namespace mdlGSMCharSet
