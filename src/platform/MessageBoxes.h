#pragma once

#include <QString>

/// The picture beside the text.
enum class BoxIcon { None, Information, Question, Critical };
/// Which answers the box offers.
enum class BoxButtons { Ok, YesNo };
/// The button that was pressed.
enum class BoxAnswer { Ok, Yes, No };

/// One box as a module asks for it. Line breaks in `Text` are CR LF or LF.
struct BoxRequest {
    QString Title;
    QString Text;
    BoxIcon Icon = BoxIcon::None;
    BoxButtons Buttons = BoxButtons::Ok;

    bool operator==(const BoxRequest&) const = default;
};

/// Message boxes as a seam: a module without widgets can show a box without knowing a toolkit, and a test
/// answers it. A dismissed box answers Ok or No.
class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;
    /// Returns when the box is answered or dismissed.
    virtual BoxAnswer Show(const BoxRequest& request) = 0;
};
