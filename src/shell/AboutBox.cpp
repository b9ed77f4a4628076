#include "shell/AboutBox.h"

#include "app/Machine.h"
#include "controls/ModalDoor.h"
#include "platform/Clock.h"
#include "platform/EventPump.h"
#include "shell/frmAbout.h"
#include "store/Phonebook.h"

void AboutBox::Show(QWidget& owner, const Machine& machine, const PhonebookState& phonebook) {
    {
        frmAbout form(machine.Time.Now().date().year(), QStringLiteral(LARKSPAN_VERSION),
                      phonebook.cfgVersion, machine.Web);
        machine.Door.ShowModal(form, &owner);
    }
    owner.repaint();
    machine.Pump.Process(2);
}
