// The console's log file page: how much the driver's log keeps, and what. A change takes effect when the page is saved.
#pragma once

#include "module/console/ConsolePage.h"
#include "module/console/LogPage.h"

class CSpinEdit;
class QButtonGroup;
class QCheckBox;

class CLogFileDialog : public CConsolePage {
    Q_OBJECT

public:
    explicit CLogFileDialog(QWidget* place);

    void Load() override;
    bool Save() override;
    // Saves once more, also what was left with Cancel: the last that the logger hears is what the page shows.
    void Destroy() override { Save(); }

private:
    LogPageFields GetFields() const;
    void SetFields(const LogPageFields& fields);
    void EnableControls();

    QCheckBox* m_checks[LOG_CHECK_COUNT] = {};
    CSpinEdit* m_limits[LOG_LIMIT_COUNT] = {};
    QButtonGroup* m_levels;
};
