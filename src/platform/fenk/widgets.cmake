# The visual half of the toolkit, and the gallery that shows it.
find_package(Qt5 5.15 REQUIRED COMPONENTS X11Extras)

cellarix_library(cellarix_fenk WIDGETS
  SOURCES
    controls/Card.cpp controls/Card.h
    controls/FloatingMessage.cpp controls/FloatingMessage.h
    controls/IconButton.cpp controls/IconButton.h
    controls/Label.cpp controls/Label.h
    controls/LineEdit.cpp controls/LineEdit.h
    controls/SearchEdit.cpp controls/SearchEdit.h
    controls/SettingRow.cpp controls/SettingRow.h
    controls/Spinner.cpp controls/Spinner.h
    controls/SuggestButton.cpp controls/SuggestButton.h
    controls/SwitchButton.cpp controls/SwitchButton.h
    controls/WarningButton.cpp controls/WarningButton.h
    style/BarPainter.cpp style/BarPainter.h
    style/ButtonKeys.cpp style/ButtonKeys.h
    style/ButtonPainter.cpp style/ButtonPainter.h
    style/Color.cpp style/Color.h
    style/ComboDelegate.cpp style/ComboDelegate.h
    style/FieldPainter.cpp style/FieldPainter.h
    style/FocusRing.cpp style/FocusRing.h
    style/ItemPainter.cpp style/ItemPainter.h
    style/MenuPainter.cpp style/MenuPainter.h
    style/Paint.cpp style/Paint.h
    style/Style.cpp style/Style.h
    style/StyleMeasures.cpp
    style/SymbolicIconEngine.cpp style/SymbolicIconEngine.h
    style/SystemAppearance.cpp style/SystemAppearance.h
    style/Theme.cpp style/Theme.h
    style/Tokens.h
    style/Transitions.cpp style/Transitions.h
    style/WidgetLook.cpp style/WidgetLook.h
    system/WindowPlatform.cpp system/WindowPlatform.h
    window/AboutDialog.cpp window/AboutDialog.h
    window/AbstractDialog.cpp window/AbstractDialog.h
    window/Application.cpp window/Application.h
    window/Dialog.cpp window/Dialog.h
    window/DialogAnchor.cpp window/DialogAnchor.h
    window/MainWindow.cpp window/MainWindow.h
    window/StandardMenu.cpp window/StandardMenu.h
    window/TitleBar.cpp window/TitleBar.h
    window/Veil.cpp window/Veil.h
    window/WindowFrame.cpp window/WindowFrame.h
    icons/fenk_icons.qrc
  LIBS cellarix_fenk_core Qt5::Widgets Qt5::DBus Qt5::Svg Qt5::X11Extras xcb)

add_subdirectory(gallery)
