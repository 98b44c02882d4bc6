# The camera models that the programs know, a row each. A person reads a new model's numbers off
# `zelvoria-diagnostico`. Where several are plugged in, the last one on the bus is moved, whichever row it is of.
#
# VENDOR, PRODUCT: USB ids, four lower-case hexadecimal digits. NAME: what people call it, in Spanish.
# PAN, TILT, ZOOM: minimum, maximum, resolution and default, in the camera's raw units (see camera_models.h.in).

zel_camera_model(VENDOR 2574 PRODUCT 09c0 NAME "Cámara PTZ"
    PAN -612000 612000 3600 0 TILT -108000 324000 3600 0 ZOOM 0 1000 1 0)
