#pragma once

#include "platform/MessageBoxes.h"

class ModalDoor;

/// Message boxes on the screen, modal over the window that is in use. A question's default button is No: a
/// held Enter key deletes nothing.
class QtMessageBoxes final : public MessageBoxes {
public:
    explicit QtMessageBoxes(ModalDoor& door) : m_door(door) {}
    BoxAnswer Show(const BoxRequest& request) override;

private:
    ModalDoor& m_door;
};
