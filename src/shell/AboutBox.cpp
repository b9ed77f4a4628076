#include "shell/AboutBox.h"

#include "app/Machine.h"
#include "controls/ModalDoor.h"
#include "platform/Clock.h"
#include "platform/EventPump.h"
#include "shell/frmAbout.h"

void AboutBox::Show(QWidget& owner, const Machine& machine, qint32 phonebookVersion) {
    {
        frmAbout form(machine.Time.Now().date().year(), QStringLiteral(LARKSPAN_VERSION), phonebookVersion,
                      machine.Web);
        machine.Door.ShowModal(form, &owner);
    }
    owner.repaint();
    machine.Pump.Process(2);
}
