#include "window/controls.h"

#include "window/eliding_label.h"
#include "window/icons.h"

#include <QApplication>
#include <QCheckBox>
#include <QFontDatabase>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QStyle>
#include <QTabWidget>
#include <QVBoxLayout>

namespace qndr {
namespace {

constexpr int kMargin = 16;
constexpr int kGap = 10;
constexpr int kLogoSize = 48;
constexpr double kTitleScale = 1.3;

template <typename Control> Control* Named(Control* control, const char* name) {
    control->setObjectName(name);
    return control;
}

QLabel* MakeLabel(const char* name, const QString& text) {
    auto* label = Named(new QLabel(text), name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QLabel* MakeValue(const char* name, const QString& text, Qt::TextElideMode mode) {
    auto* label = Named(new ElidingLabel(mode), name);
    label->setText(text);
    return label;
}

QPushButton* MakeButton(const char* name, const QString& caption, QChar letter) {
    return Named(new QPushButton(WithMnemonic(caption, letter)), name);
}

QCheckBox* MakeCheckBox(const char* name, const QString& caption, QChar letter) {
    return Named(new QCheckBox(WithMnemonic(caption, letter)), name);
}

/// A page whose rows are captions with their values, and a button in its lower corner.
class Page {
  public:
    Page(QTabWidget& tabs, const char* name, const QString& caption, QChar letter)
        : widget_(Named(new QWidget, name)), rows_(new QVBoxLayout(widget_)), grid_(new QGridLayout) {
        tabs.addTab(widget_, WithMnemonic(caption, letter));
        rows_->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
        rows_->setSpacing(kGap);
        rows_->addLayout(grid_);
        grid_->setHorizontalSpacing(kMargin);
        grid_->setVerticalSpacing(kGap);
        grid_->setColumnStretch(1, 1);
    }

    void Add(QLabel* caption, QLabel* value) {
        caption->setBuddy(value);
        AddRow(caption, value);
    }
    void AddRow(QWidget* left, QWidget* right) {
        const int row = grid_->rowCount();
        if (left != nullptr) {
            grid_->addWidget(left, row, 0);
        }
        grid_->addWidget(right, row, 1);
    }
    void AddBelow(QWidget* wide) { rows_->addWidget(wide); }
    void AddBelow(QLayout* wide) { rows_->addLayout(wide); }
    void Finish(QPushButton* button) {
        rows_->addStretch(1);
        rows_->addWidget(button, 0, Qt::AlignRight);
    }

  private:
    QWidget* widget_;
    QVBoxLayout* rows_;
    QGridLayout* grid_;
};

/// Stays hidden: the window's design has it, and nothing shows it.
QLayout* MakeNotResponsible(const QWidget& window) {
    auto* imgNotResponsible = Named(new QLabel, "imgNotResponsible");
    const int size = window.style()->pixelMetric(QStyle::PM_SmallIconSize);
    imgNotResponsible->setPixmap(window.style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(size));
    imgNotResponsible->hide();
    auto* lblNotResponsible =
        MakeLabel("lblNotResponsible", "This computer is not the one responsible for syncing.");
    lblNotResponsible->hide();
    auto* row = new QHBoxLayout;
    row->addWidget(imgNotResponsible);
    row->addWidget(lblNotResponsible, 1);
    return row;
}

void BuildStatusPage(QTabWidget& tabs, Controls& controls) {
    Page page(tabs, "TabControlPage1", "Status", 'S');
    controls.lblHeartbeat = MakeValue("lblHeartbeat", "{heartbeat}", Qt::ElideRight);
    controls.lblLastSync = MakeValue("lblLastSync", "{last sync}", Qt::ElideRight);
    controls.lblNextSync = MakeValue("lblNextSync", "{next sync}", Qt::ElideRight);
    controls.lblFileCount = MakeLabel("lblFileCount", "{T/M/R}");
    controls.lblFileCount->setToolTip("Total number of files / Files for Main / Files for Local Roaming");
    controls.lblActivity = MakeValue("lblActivity", "{activity}", Qt::ElideMiddle);
    controls.cmdSyncNow = MakeButton("cmdSyncNow", "Sync Now", 'N');
    page.Add(MakeLabel("Label4", "Agent status:"), controls.lblHeartbeat);
    page.Add(MakeLabel("Label7", "Last sync:"), controls.lblLastSync);
    page.Add(MakeLabel("Label8", "Next sync:"), controls.lblNextSync);
    page.Add(MakeLabel("Label11", "File count:"), controls.lblFileCount);
    page.Add(MakeLabel("Label12", "Current activity:"), controls.lblActivity);
    page.AddBelow(MakeNotResponsible(tabs));
    page.Finish(controls.cmdSyncNow);
}

void BuildSettingsPage(QTabWidget& tabs, Controls& controls) {
    Page page(tabs, "TabControlPage2", "Settings", 'e');
    controls.lblProfile = MakeValue("lblProfile", "{profile}", Qt::ElideRight);
    controls.lblCompany = MakeValue("lblCompany", "{company}", Qt::ElideMiddle);
    controls.lblSyncFolder = MakeValue("lblSyncFolder", "{sync folder}", Qt::ElideMiddle);
    controls.cmdOpenSyncFolder = MakeButton("cmdOpenSyncFolder", "Open Sync Folder", 'O');
    page.Add(MakeLabel("Label1", "Profile:"), controls.lblProfile);
    page.Add(MakeLabel("Label2", "Companies:"), controls.lblCompany);
    page.Add(MakeLabel("Label3", "Sync folder:"), controls.lblSyncFolder);
    page.Finish(controls.cmdOpenSyncFolder);
}

QSlider* MakeFrequencySlider() {
    auto* slider = Named(new QSlider(Qt::Horizontal), "sldFrequency");
    slider->setRange(0, 60);
    slider->setSingleStep(1);
    slider->setPageStep(15);
    slider->setTickInterval(5);
    slider->setTickPosition(QSlider::TicksBelow);
    slider->setAccessibleName("Sync frequency");
    // Some styles cut the handle at the height that they ask for.
    slider->setMinimumHeight(slider->sizeHint().height() + kGap);
    return slider;
}

void BuildAdvancedPage(QTabWidget& tabs, Controls& controls) {
    Page page(tabs, "TabControlPage3", "Advanced", 'A');
    controls.sldFrequency = MakeFrequencySlider();
    controls.lblFrequency = MakeLabel("lblFrequency", "Every 99 minutes");
    controls.chkEnableHeartbeat = MakeCheckBox("chkEnableHeartbeat", "Enable heartbeat", 'h');
    controls.chkKeep = MakeCheckBox("chkKeep", "Keep backups of sync data", 'K');
    controls.chkManageDeleted = MakeCheckBox("chkManageDeleted", "Manage deleting sync files", 'M');
    controls.chkBackupOrders = MakeCheckBox("chkBackupOrders", "Keep backups of order data", 'o');
    controls.chkDebug = MakeCheckBox("chkDebug", "Enable debug log", 'd');
    controls.cmdLogFolder = MakeButton("cmdLogFolder", "Open Logs Folder", 'L');
    auto* Label10 = MakeLabel("Label10", WithMnemonic("Sync frequency:", 'f'));
    Label10->setBuddy(controls.sldFrequency);
    page.AddRow(Label10, controls.sldFrequency);
    page.AddRow(nullptr, controls.lblFrequency);
    for (QCheckBox* box : {controls.chkEnableHeartbeat, controls.chkKeep, controls.chkManageDeleted,
                           controls.chkBackupOrders, controls.chkDebug}) {
        page.AddBelow(box);
    }
    page.Finish(controls.cmdLogFolder);
}

QLayout* MakeTitles(const QFont& font) {
    auto* logo = new QLabel;
    logo->setPixmap(AgentIcon().pixmap(kLogoSize));
    auto* Label6 = MakeLabel("Label6", "Roaming Workstation Sync Agent");
    QFont titleFont = font;
    titleFont.setPointSizeF(font.pointSizeF() * kTitleScale);
    titleFont.setBold(true);
    Label6->setFont(titleFont);
    auto* Label5 = MakeLabel("Label5", "Velmoran Ordergrove Suite");
    auto* titles = new QGridLayout;
    titles->setHorizontalSpacing(kMargin);
    titles->setVerticalSpacing(2);
    titles->addWidget(logo, 0, 0, 2, 1);
    titles->addWidget(Label6, 0, 1, Qt::AlignBottom);
    titles->addWidget(Label5, 1, 1, Qt::AlignTop);
    titles->setColumnStretch(1, 1);
    return titles;
}

/// The system's own font where there is no Verdana.
QFont WindowFont(const QWidget& window) {
    QFont font = window.font();
    if (QFontDatabase::hasFamily("Verdana")) {
        font.setFamily("Verdana");
    }
    return font;
}

} // namespace

QString WithMnemonic(QString caption, QChar letter) {
    return caption.insert(caption.indexOf(letter), '&');
}

Controls BuildControls(QWidget& window) {
    Controls controls{};
    window.setFont(WindowFont(window));

    auto* tabs = Named(new QTabWidget, "TabControl1");
    BuildStatusPage(*tabs, controls);
    BuildSettingsPage(*tabs, controls);
    BuildAdvancedPage(*tabs, controls);

    controls.lblVersion = MakeLabel("lblVersion", "Version {0}");
    controls.cmdClose = MakeButton("cmdClose", "Close", 'C');
    auto* footer = new QHBoxLayout;
    footer->addWidget(controls.lblVersion, 1);
    footer->addWidget(controls.cmdClose);

    auto* rows = new QVBoxLayout(&window);
    rows->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    rows->setSpacing(kGap + 2);
    rows->addLayout(MakeTitles(window.font()));
    rows->addWidget(tabs);
    rows->addLayout(footer);
    rows->setSizeConstraint(QLayout::SetFixedSize);
    // Behind the layout, which gives the buttons their font.
    for (QPushButton* button : window.findChildren<QPushButton*>()) {
        button->setMinimumWidth(button->sizeHint().width() + kMargin);
    }
    return controls;
}

} // namespace qndr
