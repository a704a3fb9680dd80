#include "tests/gui/look/Scenes.h"

#include "host/login/FirstUserCommand.h"
#include "host/login/LoginDlg.h"
#include "module/console/AboutDlg.h"
#include "module/console/ConsolePages.h"
#include "module/console/ConsoleState.h"
#include "module/console/Operator.h"
#include "module/console/PageTabs.h"
#include "module/console/PasswordInput.h"
#include "module/console/ProgressBarDlg.h"
#include "module/console/SelectTagDlg.h"
#include "module/widgets/InputDlg.h"
#include "tests/gui/ConsoleFixture.h"
#include "tests/gui/look/EditorScenes.h"
#include "tests/support/TempFolder.h"

#include <QLineEdit>
#include <QTimer>

namespace {

constexpr PasswordCost CHEAP{8192, 1};

void ShowPages(const Look& look) {
    auto& tabs = CControls(ConsoleWindow()).Only<CPageTabs>();
    for (int page = 0; page < static_cast<int>(PAGE_COUNT); ++page) {
        tabs.SelectPage(page);
        look(*ConsoleWindow(), "page " + std::to_string(page + 1) + " " + PAGE_LABELS[static_cast<std::size_t>(page)]);
    }
}

void ShowDialog(QDialog& dialog, const Look& look, const std::string& name) {
    dialog.show();
    look(dialog, name);
}

void ShowAbout(const Look& look) {
    CAboutDlg dialog(ConsoleWindow());
    ShowDialog(dialog, look, "about");
}

void ShowSelectTag(const Look& look) {
    CSelectTagDlg dialog(ConsoleWindow(), "Flush trend logs");
    ShowDialog(dialog, look, "select trigger tag");
}

void ShowInput(const Look& look) {
    std::uint32_t period = 5;
    CInputDlg dialog(ConsoleWindow(), {QStringLiteral("Refresh period"), QStringLiteral("s"), 5, 3600}, &period);
    ShowDialog(dialog, look, "input");
}

void ShowPassword(const Look& look) {
    CPasswordInput dialog(ConsoleWindow(), "secret");
    ShowDialog(dialog, look, "password");
}

void ShowProgress(const Look& look) {
    CProgressBarDlg dialog(ConsoleWindow());
    dialog.SetProgress("Reading (Boiler, 10) name & description", 40);
    look(dialog, "progress");
}

class CLoginScene {
public:
    void AddUser() {
        std::string error;
        EXPECT_TRUE(m_store.Add("anna", "correct horse", error)) << error;
    }
    void ShowLogin(const Look& look, const std::string& name, const std::string& password) {
        CLoginDlg dialog(ConsoleWindow(), m_store, "anna", [](const std::string& user) {
            return FirstUserCommand("/opt/bdc/bin/bdc", "/srv/bdc/site", user);
        });
        dialog.show();
        if (!password.empty()) {
            CControls(dialog).Get<QLineEdit>("Password").setText(QString::fromStdString(password));
            dialog.accept();
        }
        look(dialog, name);
    }
    CTempFolder m_folder;

private:
    CUserStore m_store{{m_folder.File("users"), CHEAP, {}}};
};

void ShowLogin(const Look& look) {
    CLoginScene scene;
    scene.ShowLogin(look, "login first start", "");
    scene.AddUser();
    scene.ShowLogin(look, "login", "");
    scene.ShowLogin(look, "login refused", "wrong password");
    scene.ShowLogin(look, "login delayed", "wrong password");
}

void ShowBoxes(const Look& look) {
    IOperator& op = *consoleWiring.getOperator();
    const auto show = [&](const OperatorBox& box, const char* name) {
        ShowModal([&] { op.ShowBox(box); }, look, name);
    };
    show({"Error", "This user is not member of administrator group", BoxIcon::Error, BoxButtons::Ok}, "box error");
    show({"Information", "2 devices:\r\n10 - Boiler\r\n20 - Chiller", BoxIcon::Information, BoxButtons::Ok},
         "box information");
    show({"Confirmation", "Do you want to remove device \"Boiler - 10\" ?", BoxIcon::Question, BoxButtons::YesNoCancel},
         "box question");
}

} // namespace

void ShowModal(const std::function<void()>& open, const Look& look, const std::string& name) {
    QTimer::singleShot(0, [&] {
        if (QDialog* const dialog = ModalDialog()) {
            look(*dialog, name);
            dialog->reject();
        }
    });
    open();
}

const std::vector<Scene>& AllScenes() {
    static const std::vector<Scene> SCENES{
        {"Pages", ShowPages},
        {"About", ShowAbout},
        {"SelectTag", ShowSelectTag},
        {"Input", ShowInput},
        {"Login", ShowLogin},
        {"Password", ShowPassword},
        {"Progress", ShowProgress},
        {"Boxes", ShowBoxes},
        {"Editors", ShowEditors},
        {"MemberEditors", ShowMemberEditors},
        {"ListEditors", ShowListEditors},
        {"SimpleEditors", ShowSimpleEditors},
        {"Viewer", ShowViewer},
    };
    return SCENES;
}
