// Drawing of single elements: what the display renderers and the pick renderers share. Private to render/.
#ifndef ELEMENT_DRAWING_H
#define ELEMENT_DRAWING_H

#include <GL/gl.h>

#include "caeenv.h"
#include "face_tables.h"
#include "part_access.h"

// Steps with which element slots are read, whatever stride counts the elements.
// deliberate(solid-step-8): a ten-slot solid part is counted by 10 and read by 8, so it is shifted from its second
// element on; readers that want right pictures deliver stride 8.
constexpr unsigned int shellStep = 4;
constexpr unsigned int solidStep = 8;
constexpr unsigned int lineStep = 3;

constexpr float beamWidth = 5;
constexpr float discreteWidth = 2;

// Inside glBegin(GL_QUADS): the element's normal and four corners.
void drawShellFlat(const PartInfoStr& part, unsigned int e);
// Inside glBegin(GL_QUADS): each corner's node normal before the corner.
void drawShellSmooth(const PartInfoStr& part, unsigned int e);
// Inside glBegin(GL_QUADS): the faces of the element's shape; nothing for an unknown NPE character.
void drawSolid(CAEEnv& env, const PartInfoStr& part, unsigned int e, const PartNormals& normals);
// The element's line between its end nodes, as vertices only.
void drawLineVertices(const PartInfoStr& part, const unsigned int* slots);
// A beam: its line, and a point at the third node where there is one; each in its own glBegin.
void drawBeam(const PartInfoStr& part, unsigned int e);
// A spring or damper: its line in its own glBegin.
void drawDiscrete(const PartInfoStr& part, unsigned int e);

#endif
