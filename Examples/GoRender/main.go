// go-render CLASS WIDTH HEIGHT [name=value ...] < in.rgb > out.rgb: one effect over one frame of raw RGB, through the C interface.
package main

/*
#cgo LDFLAGS: -lqv
#include <stdlib.h>
#include <qv.h>
*/
import "C"

import (
	"errors"
	"fmt"
	"io"
	"os"
	"strconv"
	"strings"
	"unsafe"
)

const errorSize = 256

// The cause that a function of the library left in its buffer.
type cause [errorSize]C.char

func (c *cause) text() *C.char { return &c[0] }
func (c *cause) err() error    { return errors.New(C.GoString(&c[0])) }

func text(value string) (*C.char, func()) {
	made := C.CString(value)
	return made, func() { C.free(unsafe.Pointer(made)) }
}

func set(filter *C.qv_filter, setting string) error {
	name, value, found := strings.Cut(setting, "=")
	if !found {
		return fmt.Errorf("%s is not name=value", setting)
	}
	cName, freeName := text(name)
	defer freeName()
	cValue, freeValue := text(value)
	defer freeValue()
	var c cause
	if C.qv_filter_set(filter, cName, cValue, c.text(), errorSize) == 0 {
		return c.err()
	}
	return nil
}

func run() error {
	if len(os.Args) < 4 {
		return errors.New("give a class, a width and a height")
	}
	width, widthError := strconv.Atoi(os.Args[2])
	height, heightError := strconv.Atoi(os.Args[3])
	if widthError != nil || heightError != nil {
		return errors.New("a size is two numbers of pixels")
	}
	// In C's memory: the library holds the frame's address beyond one call.
	bytes := width * height * 3
	memory := C.malloc(C.size_t(bytes))
	defer C.free(memory)
	pixels := unsafe.Slice((*byte)(memory), bytes)
	if _, err := io.ReadFull(os.Stdin, pixels); err != nil {
		return err
	}

	var c cause
	name, freeName := text(os.Args[1])
	defer freeName()
	filter := C.qv_filter_create(name, c.text(), errorSize)
	if filter == nil {
		return c.err()
	}
	defer C.qv_filter_destroy(filter)
	for _, setting := range os.Args[4:] {
		if err := set(filter, setting); err != nil {
			return err
		}
	}
	frame := (*C.qv_frame)(C.calloc(1, C.sizeof_qv_frame))
	defer C.free(unsafe.Pointer(frame))
	frame.size = C.sizeof_qv_frame
	frame.format = C.QV_FORMAT_RGB8
	frame.width, frame.height = C.int32_t(width), C.int32_t(height)
	frame.planes[0] = (*C.uint8_t)(memory)
	frame.strides[0] = C.size_t(width * 3)
	image := C.qv_image_from_frame(frame, nil, nil, c.text(), errorSize)
	if image == nil {
		return c.err()
	}
	defer C.qv_image_destroy(image)
	role, freeRole := text("frame")
	defer freeRole()
	if C.qv_filter_set_input(filter, role, image, c.text(), errorSize) == 0 {
		return c.err()
	}
	C.qv_filter_set_moment(filter, 1, 0, 3)
	output := C.qv_filter_output(filter, c.text(), errorSize)
	if output == nil {
		return c.err()
	}
	defer C.qv_image_destroy(output)
	if C.qv_render(nil, output, frame, c.text(), errorSize) == 0 {
		return c.err()
	}
	_, err := os.Stdout.Write(pixels)
	return err
}

func main() {
	if err := run(); err != nil {
		fmt.Fprintln(os.Stderr, "go-render:", err)
		os.Exit(1)
	}
}
