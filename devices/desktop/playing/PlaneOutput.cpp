#include "playing/PlaneOutput.h"

namespace quiravent::desktop {

PlaneOutput::PlaneOutput(Screen& screen, Place place) : m_screen(screen) {
    if (place == Place::top)
        m_screen.addPlane(m_plane);
    else
        m_screen.addBottomPlane(m_plane);
}

PlaneOutput::~PlaneOutput() { m_screen.removePlane(m_plane); }

void PlaneOutput::show(const VideoPicture& picture) {
    m_screen.refresh(m_plane.setPicture(picture.surface, signedCoordinate(picture.bounds.x),
                                        signedCoordinate(picture.bounds.y)));
    m_shownPosition = picture.position;
}

void PlaneOutput::hide() {
    m_shownPosition = kNoPicture;
    m_screen.refresh(m_plane.setPicture(nullptr, 0, 0));
}

}  // namespace quiravent::desktop
