// The editor of the parameters of an out-of-range event. Limits are real, double, signed or unsigned by the event type;
// all are edited as real numbers. Only on the console thread.
#pragma once

#include "module/editors/FormDlg.h"

#include "api/bacnet/Records.h"

class CEditEPOutOfRange : public CFormDlg {
    Q_OBJECT

public:
    // eventType: 5, 14, 15 or 16; it says which of the sets is shown and edited.
    CEditEPOutOfRange(QWidget* parent, unsigned eventType);

    BACSTAC_EP_OUT_OF_RANGE Value{};                  // 5, the only one that a data type opens
    BACSTAC_EP_DOUBLE_OUT_OF_RANGE DoubleValue{};     // 14
    BACSTAC_EP_SIGNED_OUT_OF_RANGE SignedValue{};     // 15
    BACSTAC_EP_UNSIGNED_OUT_OF_RANGE UnsignedValue{}; // 16

private:
    void* Set(unsigned eventType);
};
