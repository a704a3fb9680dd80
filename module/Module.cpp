// Puts the module together: tells the console's core which classes stand behind its interfaces.
#include "api/bacnet/BacGeneral.h"
#include "api/driver/Driver.h"
#include "module/browser/ObjBrowserDlg.h"
#include "module/console/App.h"
#include "module/console/CompiledHelp.h"
#include "module/console/ConsoleState.h"
#include "module/console/ConsoleThread.h"
#include "module/console/Globals.h"
#include "module/console/GuiOperator.h"
#include "module/console/LogFileDialog.h"
#include "module/console/SystemTray.h"
#include "module/history/ConsoleHistory.h"

#include <memory>

namespace {

[[maybe_unused]] const bool IS_WIRED = [] {
    consoleWiring.newRun = [](CDriver& driver) -> std::shared_ptr<IConsoleRun> {
        return std::make_shared<CBDCThread>(driver);
    };
    consoleWiring.newHistoryStarter = NewHistoryStarter;
    consoleWiring.newPage[PAGE_LOG_FILE] = [](QWidget* place, CDriver&) -> CConsolePage* {
        return new CLogFileDialog(place);
    };
    consoleWiring.newPage[PAGE_BROWSER] = [](QWidget* place, CDriver& driver) -> CConsolePage* {
        return new CObjBrowserDlg(place, driver, *BACnet, *CGuiOperator::Get());
    };
    consoleWiring.newTray = []() -> std::unique_ptr<ITray> { return std::make_unique<CSystemTray>(); };
    consoleWiring.getOperator = CGuiOperator::Get;
    consoleWiring.showHelp = [](int context) {
        CBDCApp(BDCManager.GetDriver().GetKernel()).ShowHelp(context, OpenCompiledHelp, *CGuiOperator::Get());
    };
    return true;
}();

} // namespace
