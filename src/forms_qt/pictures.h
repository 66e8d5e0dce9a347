#pragma once
// The sample drawings of the pages' image controls, painted from the picture's name: "imgBarStack"
// is a stacked bar chart, "imgPie3DExplode" an exploded pie in 3-D, "imgLegendDim" a greyed
// legend. A name that names no known kind gets an empty chart frame.
#include <QString>

class QPainter;
class QRect;

namespace forms_qt {

void PaintPicture(QPainter& painter, const QRect& rect, const QString& name);

}  // namespace forms_qt
