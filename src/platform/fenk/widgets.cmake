# The visual half of the toolkit, and the gallery that shows it.
find_package(Qt5 5.15 REQUIRED COMPONENTS X11Extras)

cellarix_library(cellarix_fenk WIDGETS
  SOURCES
    AboutDialog.cpp AboutDialog.h
    AbstractDialog.cpp AbstractDialog.h
    Application.cpp Application.h
    WidgetLook.cpp WidgetLook.h
    Card.cpp Card.h
    Color.cpp Color.h
    Dialog.cpp Dialog.h
    DialogAnchor.cpp DialogAnchor.h
    FloatingMessage.cpp FloatingMessage.h
    IconButton.cpp IconButton.h
    Label.cpp Label.h
    LineEdit.cpp LineEdit.h
    MainWindow.cpp MainWindow.h
    SearchEdit.cpp SearchEdit.h
    SettingRow.cpp SettingRow.h
    Spinner.cpp Spinner.h
    StandardMenu.cpp StandardMenu.h
    Style.cpp Style.h StyleMeasures.cpp
    SuggestButton.cpp SuggestButton.h
    SwitchButton.cpp SwitchButton.h
    SymbolicIconEngine.cpp SymbolicIconEngine.h
    SystemAppearance.cpp SystemAppearance.h
    Theme.cpp Theme.h
    TitleBar.cpp TitleBar.h
    Tokens.h
    Veil.cpp Veil.h
    WarningButton.cpp WarningButton.h
    WindowFrame.cpp WindowFrame.h
    WindowPlatform.cpp WindowPlatform.h
    icons/fenk_icons.qrc
    style/BarPainter.cpp style/BarPainter.h
    style/ButtonKeys.cpp style/ButtonKeys.h
    style/ButtonPainter.cpp style/ButtonPainter.h
    style/ComboDelegate.cpp style/ComboDelegate.h
    style/FieldPainter.cpp style/FieldPainter.h
    style/FocusRing.cpp style/FocusRing.h
    style/ItemPainter.cpp style/ItemPainter.h
    style/MenuPainter.cpp style/MenuPainter.h
    style/Paint.cpp style/Paint.h
    style/Transitions.cpp style/Transitions.h
  LIBS cellarix_fenk_core Qt5::Widgets Qt5::DBus Qt5::Svg Qt5::X11Extras xcb)

add_subdirectory(gallery)
