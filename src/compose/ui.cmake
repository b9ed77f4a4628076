# The composing side of the main window: message, recipients, send buttons.
