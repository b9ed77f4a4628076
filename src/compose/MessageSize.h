#pragma once

#include <QString>

/// How much of the configured message size a composition uses. Everything here is plain arithmetic; the
/// message panel shows it. The quantities are 16-bit; one that does not fit stays 0, and the others are
/// computed with that.
struct MessageSize {
    qint16 TailLen = 0;    // length of the tail text plus 1 for the blank before it
    qint16 Available = 0;  // maximum less TailLen; negative for a tail longer than the maximum
    qint16 Used = 0;       // GSMTextLength of the text
    qint16 Remaining = 0;  // Available less Used
    qint16 TotalLen = 0;   // Used plus TailLen plus 1
    qint16 Parts = 1;      // SMS parts of the finished text
    /// The text, cut from its end until it fits (or is empty).
    QString Text;
    bool IsCut = false;

    /// Units (GSM 03.38) of a message that is one part, and of each part where there are more. A network puts
    /// 153 into each (3GPP TS 23.040); this display counts with 152.
    static constexpr qint16 SinglePartLimit = 160;
    static constexpr qint16 PartSize = 152;

    /// `maximum` is MaxMessageSize; below 160 it counts as 160. Linear in the length of `text`, also when it
    /// is cut.
    [[nodiscard]] static MessageSize Measure(const QString& text, const QString& tailText, qint16 maximum);
};

/// ": " signature " - " tail, or " - " tail without a signature. `signature` is trimmed here.
[[nodiscard]] QString BuildTailText(const QString& signature, const QString& tail);
