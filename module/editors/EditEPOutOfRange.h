// The editor of the parameters of an out-of-range event. Limits are real, double, signed or unsigned by the event type;
// all are edited as real numbers. Only on the console thread.
#pragma once

#include "module/editors/FormDlg.h"

#include "api/bacnet/Records.h"

// By event type. One of them is shown and edited.
struct OutOfRangeSets {
    BACSTAC_EP_OUT_OF_RANGE Real;              // 5, the only one that a data type opens
    BACSTAC_EP_DOUBLE_OUT_OF_RANGE Double;     // 14
    BACSTAC_EP_SIGNED_OUT_OF_RANGE Signed;     // 15
    BACSTAC_EP_UNSIGNED_OUT_OF_RANGE Unsigned; // 16
};

class CEditEPOutOfRange : public CRecordForm<OutOfRangeSets> {
    Q_OBJECT

public:
    CEditEPOutOfRange(QWidget* parent, unsigned eventType);
};
