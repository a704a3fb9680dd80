// The buttons of a dialog that is confirmed or left.
#pragma once

class QDialog;
class QDialogButtonBox;

// "OK" and "Cancel", connected to the dialog's accept and reject. The dialog owns them.
QDialogButtonBox* NewOkCancel(QDialog& dialog);
