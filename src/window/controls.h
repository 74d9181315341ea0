#pragma once

#include <QString>

class QCheckBox;
class QLabel;
class QPushButton;
class QSlider;
class QWidget;

namespace qndr {

/// The controls that the program reads or changes, under the names that they also bear as objects. They belong to
/// the window.
struct Controls {
    QLabel* lblVersion;
    QPushButton* cmdClose;

    QLabel* lblHeartbeat;
    QLabel* lblLastSync;
    QLabel* lblNextSync;
    QLabel* lblFileCount;
    QLabel* lblActivity;
    QPushButton* cmdSyncNow;

    QLabel* lblProfile;
    QLabel* lblCompany;
    QLabel* lblSyncFolder;
    QPushButton* cmdOpenSyncFolder;

    QSlider* sldFrequency;
    QLabel* lblFrequency;
    QCheckBox* chkEnableHeartbeat;
    QCheckBox* chkKeep;
    QCheckBox* chkManageDeleted;
    QCheckBox* chkBackupOrders;
    QCheckBox* chkDebug;
    QPushButton* cmdLogFolder;
};

/// Fills an empty window with all controls and gives it its font and its fixed size.
Controls BuildControls(QWidget& window);

/// The caption with its keyboard access: the first place where the letter stands in that case. It must be there.
QString WithMnemonic(QString caption, QChar letter);

} // namespace qndr
