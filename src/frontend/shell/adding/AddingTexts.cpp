#include "shell/adding/AddingTexts.h"

#include <QCoreApplication>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(AddingTexts)
};

}  // namespace

QString AddingTexts::title() {
    return Texts::tr("添加应用");
}

QString AddingTexts::run() {
    return Texts::tr("运行");
}

QString AddingTexts::localTab() {
    return Texts::tr("本地文件");
}

QString AddingTexts::localFormats() {
    return Texts::tr("支持本地exe应用(exe、msi、yml)格式");
}

QString AddingTexts::localChoose() {
    return Texts::tr("添加本地文件");
}

QString AddingTexts::localFilter() {
    return Texts::tr("安装程序、应用程序打包脚本(*.exe *.msi *.yml)");
}

QString AddingTexts::onlineTab() {
    return Texts::tr("在线文件");
}

QString AddingTexts::onlineAddress() {
    return Texts::tr("请输入在线文件下载地址");
}

QString AddingTexts::portableTab() {
    return Texts::tr("绿色文件");
}

QString AddingTexts::portableHint() {
    return Texts::tr("请上传解压后的绿色软件");
}

QString AddingTexts::portableChoose() {
    return Texts::tr("添加本地目录");
}

QString AddingTexts::dropHere() {
    return Texts::tr("拖拽文件至此或");
}

QString AddingTexts::checking() {
    return Texts::tr("文件校验中，请稍等...");
}

QString AddingTexts::isValid() {
    return Texts::tr("该文件为有效文件");
}

QString AddingTexts::isInvalid() {
    return Texts::tr("该文件解析错误，请重新选择");
}
