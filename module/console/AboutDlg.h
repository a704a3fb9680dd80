// The about box of the tray icon's menu.
#pragma once

#include <QDialog>

class CAboutDlg : public QDialog {
    Q_OBJECT

public:
    explicit CAboutDlg(QWidget* parent);
};
