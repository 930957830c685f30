import QtQuick

/** One symbol, in one colour, sharp at any scale. An unknown name shows a neutral square. */
Image {
    id: root

    required property string symbol
    property color color: Theme.text
    property real size: Theme.iconSize

    width: size
    height: size
    sourceSize.width: size
    sourceSize.height: size
    source: symbol === "" ? "" : "image://symbols/" + symbol + "/" + String(color).slice(1)
    fillMode: Image.PreserveAspectFit
}
